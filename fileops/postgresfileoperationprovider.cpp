#include "fileops/postgresfileoperationprovider.h"

#include "fileops/postgresfileoperationworker.h"

FileOperationWorker *PostgresFileOperationProvider::createWorker(const QString &connectionName)
{
    return new PostgresFileOperationWorker(connectionName, details(), constructor());
}

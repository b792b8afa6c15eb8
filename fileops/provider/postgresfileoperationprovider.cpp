#include "fileops/provider/postgresfileoperationprovider.h"

#include "fileops/worker/postgresfileoperationworker.h"

FileOperationWorker *PostgresFileOperationProvider::createWorker(const QString &connectionName)
{
    return new PostgresFileOperationWorker(connectionName, details(), constructor());
}

#include "fileops/sqlitefileoperationprovider.h"

#include "fileops/sqlitefileoperationworker.h"

FileOperationWorker *SqliteFileOperationProvider::createWorker(const QString &connectionName)
{
    return new SqliteFileOperationWorker(connectionName, details(), constructor());
}

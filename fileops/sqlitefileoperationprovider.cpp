#include "fileops/sqlitefileoperationprovider.h"

#include "fileops/sqlitefileoperationworker.h"

FileOperationWorker *SqliteFileOperationProvider::createWorker(const QString &connectionName)
{
    auto *worker = new SqliteFileOperationWorker(connectionName, details(), constructor());
    if (m_foreignWrites)
        worker->setForeignWrites(m_foreignWrites);
    return worker;
}

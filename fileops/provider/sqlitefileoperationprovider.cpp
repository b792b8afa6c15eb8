#include "fileops/provider/sqlitefileoperationprovider.h"

#include "fileops/worker/sqlitefileoperationworker.h"

FileOperationWorker *SqliteFileOperationProvider::createWorker(const QString &connectionName)
{
    auto *worker = new SqliteFileOperationWorker(connectionName, details(), constructor());
    if (m_foreignWrites)
        worker->setForeignWrites(m_foreignWrites);
    return worker;
}

#include "fileops/worker/sqlitefileoperationworker.h"

#include "db/sql/connections.h"

#include <QSqlDatabase>

namespace {
constexpr int patienceMilliseconds = 5000;
} // namespace

void SqliteFileOperationWorker::setForeignWrites(ForeignWrites *foreignWrites)
{
    m_writes = std::make_unique<WorkerWrites>(*this, *foreignWrites);
}

QString SqliteFileOperationWorker::connectOptions() const
{
    // By the address of a file another database is attached for reading only.
    return QStringLiteral("QSQLITE_OPEN_URI;QSQLITE_BUSY_TIMEOUT=%1").arg(patienceMilliseconds);
}

void SqliteFileOperationWorker::setPatient(bool isPatient)
{
    Connections::setPatient(QSqlDatabase::database(connectionName(), false), isPatient);
}

void SqliteFileOperationWorker::prepareConnection()
{
    // From here on the wait for a lock hears a cancel.
    setPatient(true);
    // Else the pages that a savepoint touches go through a file on the disk as soon as they are a few.
    runAsync(QStringLiteral("PRAGMA temp_store=MEMORY;"));
    m_hasLargeCache = false;
    if (m_writes)
        m_writes->connectionOpened();
}

bool SqliteFileOperationWorker::beginTransaction(const QString &connectionName)
{
    if (connectionName != this->connectionName())
        return FileOperationWorker::beginTransaction(connectionName);
    forgetLostSavepoint();
    m_lastIds.clear();
    m_isInTransaction = takeWriteLock();
    // The unique id codes are written at random places of their index: 64 MiB keep it in memory. Only now, as
    // this reads the database, for which it would wait and fail by itself while another program locks it.
    if (m_isInTransaction && !m_hasLargeCache)
        m_hasLargeCache = runAsync(QStringLiteral("PRAGMA cache_size=-65536;"));
    if (m_isInTransaction)
        waitForCommitOnly(QSqlDatabase::database(connectionName, false));
    return m_isInTransaction;
}

bool SqliteFileOperationWorker::takeWriteLock()
{
    if (!runAsync(QStringLiteral("BEGIN IMMEDIATE;")))
        return false;
    if (!m_writes || m_writes->isCurrent())
        return true;
    FileOperationWorker::rollbackTransaction(connectionName());
    return false;
}

bool SqliteFileOperationWorker::commitTransaction(const QString &connectionName)
{
    if (m_writes)
        m_writes->aboutToCommit();
    const bool success = FileOperationWorker::commitTransaction(connectionName);
    if (m_writes)
        m_writes->committed(success);
    m_isInTransaction = m_isInTransaction && !success;
    return success;
}

bool SqliteFileOperationWorker::rollbackTransaction(const QString &connectionName)
{
    m_isInTransaction = false;
    const bool isDone = FileOperationWorker::rollbackTransaction(connectionName);
    if (m_writes)
        m_writes->rolledBack();
    return isDone;
}

bool SqliteFileOperationWorker::nextId(const QString &table, const QString &column, qint64 &id)
{
    if (!m_isInTransaction)
        return FileOperationWorker::nextId(table, column, id);
    const auto last = m_lastIds.find(table);
    if (last != m_lastIds.end()) {
        id = ++last.value();
        return true;
    }
    if (!FileOperationWorker::nextId(table, column, id))
        return false;
    m_lastIds.insert(table, id);
    return true;
}

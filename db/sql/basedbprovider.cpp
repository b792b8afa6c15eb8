#include "db/sql/basedbprovider.h"

#include "app/settings/constants.h"
#include "db/sql/asyncrunner.h"
#include "db/sql/connections.h"
#include "db/sql/drivertexts.h"
#include "db/sql/errorjudge.h"
#include "db/sql/readbound.h"
#include "db/sql/serverwatch.h"
#include "db/sql/statementqueue.h"
#include "db/sql/transaction.h"
#include "db/sql/writeguard.h"

#include <QScopedValueRollback>
#include <QSqlDatabase>

#include <utility>

namespace {
QString orDefault(const QString &connectionName)
{
    return connectionName.isEmpty() ? QString(QLatin1String(QSqlDatabase::defaultConnection))
                                    : connectionName;
}

QSqlDatabase openConnection(const QString &connectionName)
{
    return QSqlDatabase::database(orDefault(connectionName), false);
}

/** Hands slices on, each of them a sign of life from the server. */
SliceTaker noting(ServerWatch::Waiting &waiting, const SliceTaker &take)
{
    return [&waiting, &take](const TableData &rows) {
        take(rows);
        waiting.gotAnswer();
    };
}

bool isOfWindow(const QSqlDatabase &database)
{
    return database.connectionName() == QLatin1String(QSqlDatabase::defaultConnection);
}

// The server's code for a prepared statement that it does not have.
const QLatin1String unknownStatement("26000");
} // namespace

BaseDBProvider::BaseDBProvider(const AbstractQueryConstructor *constructor, QObject *parent)
    : QObject(parent), m_constructor(constructor)
{
}

BaseDBProvider::~BaseDBProvider() = default;

bool BaseDBProvider::runSync(const QString &query, TableData &table, const QString &connectionName)
{
    if (connectionName.isEmpty() && takeAnswer(query, table))
        return true;
    if (connectionName.isEmpty() && isQueueOpen())
        return runInQueue(query, table);
    SyncRunner runner;
    forwardErrors(runner);
    return runner.run(query, table, connectionName);
}

bool BaseDBProvider::isQueueOpen() const
{
    return m_queue && m_queue->isOpen();
}

bool BaseDBProvider::takeAnswer(const QString &query, TableData &rows)
{
    return m_queue && m_queue->takeAnswer(query, rows);
}

void BaseDBProvider::expect(const QString &query)
{
    if (isQueueOpen())
        m_queue->expect(query);
}

bool BaseDBProvider::runInQueue(const QString &query, TableData &table)
{
    const QSqlDatabase database = openConnection(QString());
    if (!database.isOpen()) {
        loseConnection();
        return false;
    }
    QSqlQuery statement(database);
    {
        const ServerWatch::Waiting waiting(database, ServerWatch::Patient);
        if (executeForwardOnly(statement, query) && QueryRunner::readRows(statement, table))
            return true;
    }
    reportError(database, statement);
    return false;
}

bool BaseDBProvider::runAsync(const QString &query, TableData &table)
{
    AsyncRunner runner;
    forwardErrors(runner);
    return runner.run(query, table, QString());
}

bool BaseDBProvider::runAsyncWithBlob(const QString &query, const QByteArray &blob,
                                      const QString &placeholder, TableData &table)
{
    AsyncRunner runner;
    forwardErrors(runner);
    return runner.runWithBlob(query, blob, placeholder, table, QString());
}

bool BaseDBProvider::sendWaiting(const QString &connectionName)
{
    if (!connectionName.isEmpty() || !isQueueOpen() || !m_queue->isWaiting())
        return true;
    TableData none;
    return runInQueue(QStringLiteral("SELECT WHERE false;"), none);
}

bool BaseDBProvider::runSync(const QString &query, const QString &connectionName)
{
    if (connectionName.isEmpty() && isQueueOpen()) {
        m_queue->add(query);
        return true;
    }
    TableData table;
    const bool success = runSync(query, table, connectionName);
    freeRows(table);
    return success;
}

bool BaseDBProvider::runEdit(const QString &query)
{
    // On a server it would be two more round trips.
    if (m_isInTransaction || m_joinDepth > 0 ||
        openConnection(QString()).driverName() != Constants::sqliteDriver)
        return runSync(query);
    Transaction transaction(*this);
    return transaction.isActive() && runSync(query) && transaction.commit();
}

bool BaseDBProvider::runAsync(const QString &query)
{
    TableData table;
    const bool success = runAsync(query, table);
    freeRows(table);
    return success;
}

bool BaseDBProvider::runAsyncWithBlob(const QString &query, const QByteArray &blob,
                                      const QString &placeholder)
{
    return runWithBlob(query, blob, placeholder, Constants::workerConnection);
}

bool BaseDBProvider::runWithBlob(const QString &query, const QByteArray &blob, const QString &placeholder,
                                 const QString &connectionName)
{
    if (!sendWaiting(connectionName))
        return false;
    SyncRunner runner;
    forwardErrors(runner);
    TableData table;
    const bool success = runner.runWithBlob(query, blob, placeholder, table, connectionName);
    freeRows(table);
    return success;
}

bool BaseDBProvider::runPrepared(const QString &statement, const QVariantList &values,
                                 const QString &connectionName)
{
    TableData table;
    const bool success = runPrepared(statement, values, table, connectionName);
    freeRows(table);
    return success;
}

bool BaseDBProvider::runPrepared(const QString &statement, const QVariantList &values, TableData &table,
                                 const QString &connectionName)
{
    if (!sendWaiting(connectionName))
        return false;
    const QString connection = orDefault(connectionName);
    QSqlQuery *query = preparedQuery(statement, connection);
    if (!query)
        return false;
    for (int i = 0; i < values.size(); ++i)
        query->bindValue(i, DriverTexts::toBind(*query, values.at(i)));
    const QSqlDatabase database = openConnection(connection);
    ReadBound::beginStatement(statement.size());
    {
        const ServerWatch::Waiting waiting(database, ServerWatch::Patient);
        if (query->exec() && QueryRunner::readRows(*query, table)) {
            if (query->isSelect())
                query->finish();
            return true;
        }
    }
    const QSqlError error = query->lastError();
    // The next use prepares it anew. A server keeps its own until it says that it does not know one: in a
    // transaction that failed it would refuse to let one go.
    if (database.driverName() == Constants::sqliteDriver || error.nativeErrorCode() == unknownStatement)
        m_prepared[connection].remove(statement);
    tellFailure(database, error);
    return false;
}

void BaseDBProvider::clearPrepared()
{
    // The driver tells the server of each that goes.
    for (auto connection = m_prepared.begin(); connection != m_prepared.end(); ++connection) {
        const ServerWatch::Waiting waiting(openConnection(connection.key()));
        connection->clear();
    }
    m_prepared.clear();
}

QSqlQuery *BaseDBProvider::preparedQuery(const QString &statement, const QString &connectionName)
{
    const QSqlDatabase database = QSqlDatabase::database(connectionName, false);
    // Whether a server is still there is asked when a statement fails: these come by the thousand, and the
    // question takes as long as the statement.
    if (!database.isOpen()) {
        loseConnection();
        return nullptr;
    }
    QHash<QString, QSqlQuery> &ofConnection = m_prepared[connectionName];
    const auto place = ofConnection.find(statement);
    // A connection that was removed and added again has a new driver, to which the old statement means
    // nothing.
    if (place != ofConnection.end() && place->driver() == database.driver())
        return &place.value();
    QSqlQuery query(database);
    query.setForwardOnly(true);
    const auto isPrepared = [&] {
        const ServerWatch::Waiting waiting(database);
        return query.prepare(statement);
    };
    if (!isPrepared()) {
        tellFailure(database, query.lastError());
        return nullptr;
    }
    return &ofConnection.insert(statement, query).value();
}

bool BaseDBProvider::runSyncInSlices(const QString &query, int sliceRows, const SliceTaker &take,
                                     const SliceKey &key, const QString &connectionName)
{
    const QSqlDatabase database = openConnection(connectionName);
    if (!database.isOpen()) {
        loseConnection();
        return false;
    }
    QSqlQuery statement(database);
    {
        ServerWatch::Waiting waiting(database, ServerWatch::Patient);
        if (executeForwardOnly(statement, query))
            SliceReader(sliceRows, noting(waiting, take)).read(statement, key);
    }
    return !reportError(database, statement);
}

bool BaseDBProvider::runSyncJoined(const QString &query, const QString &linksQuery, int sliceRows,
                                   const SliceTaker &take)
{
    const QSqlDatabase database = openConnection(QString());
    if (!database.isOpen()) {
        loseConnection();
        return false;
    }
    if (!sendWaiting())
        return false;
    QSqlQuery links(database);
    QSqlQuery statement(database);
    // A server sends one open result at a time: there the links are fetched whole before the other starts.
    // The names of their columns come first too, as the driver asks the server for them.
    links.setForwardOnly(database.driverName() == Constants::sqliteDriver);
    {
        ServerWatch::Waiting waiting(database, ServerWatch::Patient);
        if (links.exec(linksQuery)) {
            const QStringList linkColumns = QueryRunner::columnNames(links);
            if (executeForwardOnly(statement, query))
                SliceReader(sliceRows, noting(waiting, take)).readJoined(statement, links, linkColumns);
        }
    }
    const bool linksFailed = reportError(database, links);
    return !linksFailed && !reportError(database, statement);
}

bool BaseDBProvider::executeForwardOnly(QSqlQuery &statement, const QString &query)
{
    const QStringList before = isQueueOpen() ? m_queue->take() : QStringList();
    statement.setForwardOnly(true);
    ReadBound::beginStatement(query.size());
    if (before.isEmpty())
        return statement.exec(query);
    bool isDone = statement.exec(before.join(QLatin1Char(' ')) + QLatin1Char(' ') + query);
    for (int i = 0; i < before.size() && isDone; ++i)
        isDone = statement.nextResult();
    return isDone;
}

bool BaseDBProvider::reportError(const QSqlDatabase &database, const QSqlQuery &statement)
{
    const QSqlError error = statement.lastError();
    if (error.isValid())
        tellFailure(database, error);
    return error.isValid();
}

bool BaseDBProvider::beginTransaction(const QString &connectionName)
{
    if (m_joinDepth > 0)
        return true;
    QSqlDatabase database = openConnection(connectionName);
    m_savepointLost = false;
    if (database.driverName() == Constants::sqliteDriver) {
        m_isInTransaction = beginWriting(database);
        return m_isInTransaction;
    }
    const auto isBegun = [&] {
        const ServerWatch::Waiting waiting(database);
        return database.transaction();
    };
    if (isBegun())
        return true;
    tellFailure(database, database.lastError());
    return false;
}

bool BaseDBProvider::beginWriting(QSqlDatabase &database)
{
    QSqlQuery query(database);
    if (!query.exec(QStringLiteral("BEGIN IMMEDIATE;"))) {
        tellFailure(database, query.lastError());
        return false;
    }
    if (m_writeGuard && isOfWindow(database) && !m_writeGuard->mayWrite()) {
        database.rollback();
        return false;
    }
    waitForCommitOnly(database);
    return true;
}

void BaseDBProvider::waitForCommitOnly(const QSqlDatabase &database)
{
    // Nobody else writes now. But a full cache goes to the disk page by page, and each of them would wait for
    // whoever reads; without the wait it stays in memory.
    Connections::setPatient(database, false);
}

bool BaseDBProvider::commitTransaction(const QString &connectionName)
{
    if (m_joinDepth > 0)
        return true;
    QSqlDatabase database = openConnection(connectionName);
    // The driver of SQLite keeps the number of a failed commit to itself, and with it that the disk is full
    // or the database busy; a statement tells.
    if (database.driverName() == Constants::sqliteDriver) {
        Connections::setPatient(database, true);
        QSqlQuery query(database);
        if (query.exec(QStringLiteral("COMMIT;"))) {
            m_isInTransaction = false;
            return true;
        }
        tellError(query.lastError());
        return false;
    }
    const auto isCommitted = [&] {
        const ServerWatch::Waiting waiting(database, ServerWatch::Patient);
        return database.commit();
    };
    if (isCommitted())
        return true;
    tellFailure(database, database.lastError());
    return false;
}

bool BaseDBProvider::rollbackTransaction(const QString &connectionName)
{
    if (m_joinDepth > 0)
        return true;
    // Silent: it follows a failure that was told already, and the back-end may have rolled back by itself.
    QSqlDatabase database = openConnection(connectionName);
    m_isInTransaction = false;
    const ServerWatch::Waiting waiting(database);
    const bool isDone = database.rollback();
    if (database.driverName() == Constants::sqliteDriver)
        Connections::setPatient(database, true);
    if (m_writeGuard && isOfWindow(database))
        m_writeGuard->changesUndone();
    return isDone;
}

void BaseDBProvider::joinTransaction(StatementQueue *queue)
{
    ++m_joinDepth;
    if (queue)
        m_queue = queue;
}

void BaseDBProvider::leaveTransaction(bool isCommitted)
{
    --m_joinDepth;
    if (!isCommitted)
        m_news.clear();
}

void BaseDBProvider::tellNews()
{
    const QVector<std::function<void()>> news = std::exchange(m_news, {});
    for (const std::function<void()> &tell : news)
        tell();
}

void BaseDBProvider::announce(const std::function<void()> &news)
{
    if (m_joinDepth > 0)
        m_news.append(news);
    else
        news();
}

bool BaseDBProvider::setSavepoint()
{
    return runOnSavepoint(QStringLiteral("SAVEPOINT S1;"));
}

bool BaseDBProvider::releaseSavepoint()
{
    return runOnSavepoint(QStringLiteral("RELEASE SAVEPOINT S1;"));
}

bool BaseDBProvider::rollbackToSavepoint()
{
    // Without the release the name would pile up, one level for each failed item.
    const QScopedValueRollback<bool> goingBack(m_isGoingBack, true);
    const bool isBack = runOnSavepoint(QStringLiteral("ROLLBACK TO SAVEPOINT S1;")) && releaseSavepoint();
    m_savepointLost = m_savepointLost || !isBack;
    return isBack;
}

bool BaseDBProvider::runOnSavepoint(const QString &statement)
{
    // Two a file: worth keeping prepared where the back-end can prepare them.
    if (openConnection(Constants::workerConnection).driverName() == Constants::sqliteDriver)
        return runPrepared(statement, {}, Constants::workerConnection);
    return runAsync(statement);
}

void BaseDBProvider::forwardErrors(const QueryRunner &runner)
{
    connect(&runner, &QueryRunner::connectionError, this, &BaseDBProvider::loseConnection,
            Qt::DirectConnection);
    connect(&runner, &QueryRunner::errorOccured, this, &BaseDBProvider::tellError, Qt::DirectConnection);
}

void BaseDBProvider::loseConnection()
{
    m_connectionLost = true;
    m_savepointLost = true;
    // What failed earlier is not the reason of what fails now.
    forgetLastError();
    emit connectionError();
}

void BaseDBProvider::tellFailure(const QSqlDatabase &database, const QSqlError &error)
{
    if (QueryRunner::isConnectionAlive(database))
        tellError(error);
    else
        loseConnection();
}

void BaseDBProvider::tellError(const QSqlError &error)
{
    m_lastError = error;
    if (!m_isGoingBack && !ErrorJudge::isEcho(error))
        emitError(error);
}

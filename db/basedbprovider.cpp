#include "db/basedbprovider.h"

#include "app/constants.h"
#include "db/asyncrunner.h"

#include <QSqlDatabase>

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

/** Fills the lent rows of one slice after the other. */
class SliceReader
{
public:
    SliceReader(QSqlQuery &query, int sliceRows, const SliceKey &key)
        : m_query(query),
          m_columns(QueryRunner::columnNames(query)),
          m_sliceRows(qMax(1, sliceRows)),
          m_key(key)
    {
    }
    ~SliceReader() { qDeleteAll(m_rows); }
    SliceReader(const SliceReader &) = delete;
    SliceReader &operator=(const SliceReader &) = delete;

    void readAll(const BaseDBProvider::SliceTaker &take)
    {
        int filled = 0;
        while (m_query.next()) {
            fillRow(filled++);
            if (filled == m_sliceRows) {
                take(m_rows);
                filled = 0;
            }
        }
        if (filled > 0 && !m_query.lastError().isValid())
            take(m_rows.mid(0, filled));
    }

private:
    void fillRow(int index)
    {
        if (index == m_rows.size()) {
            m_rows.append(new TableRowData(m_columns));
            m_isPartial.append(false);
        }
        TableRowData &row = *m_rows.at(index);
        const bool repeats = repeatsKey();
        if (!repeats) {
            for (int i = 0; i < m_columns.size(); ++i)
                row.setAt(i, m_query.value(i));
        } else {
            // A row that was partial in the slice before has nothing else to empty.
            if (!m_isPartial.at(index))
                row.setValues(QVector<QVariant>(m_columns.size()));
            for (const int column : m_key.newKeyColumns)
                row.setAt(column, m_query.value(column));
        }
        m_isPartial[index] = repeats;
    }

    bool repeatsKey()
    {
        if (m_key.keyColumn < 0)
            return false;
        const qint64 key = m_query.value(m_key.keyColumn).toLongLong();
        const bool repeats = m_hasKey && key == m_lastKey;
        m_lastKey = key;
        m_hasKey = true;
        return repeats;
    }

    QSqlQuery &m_query;
    QStringList m_columns;
    int m_sliceRows;
    SliceKey m_key;
    TableData m_rows;
    QVector<bool> m_isPartial;
    qint64 m_lastKey = 0;
    bool m_hasKey = false;
};
} // namespace

BaseDBProvider::BaseDBProvider(const AbstractQueryConstructor *constructor, QObject *parent)
    : QObject(parent), m_constructor(constructor)
{
}

BaseDBProvider::~BaseDBProvider() = default;

bool BaseDBProvider::runSync(const QString &query, TableData &table, const QString &connectionName)
{
    SyncRunner runner;
    forwardErrors(runner);
    return runner.run(query, table, connectionName);
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

bool BaseDBProvider::runSync(const QString &query, const QString &connectionName)
{
    TableData table;
    const bool success = runSync(query, table, connectionName);
    freeRows(table);
    return success;
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
    TableData table;
    const bool success = runAsyncWithBlob(query, blob, placeholder, table);
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
    QSqlQuery *query = preparedQuery(statement, orDefault(connectionName));
    if (!query)
        return false;
    for (int i = 0; i < values.size(); ++i)
        query->bindValue(i, values.at(i));
    const bool success = query->exec() && QueryRunner::readRows(*query, table);
    const QSqlError error = query->lastError();
    query->finish();
    if (!success) {
        // A statement that failed may be one that its server no longer knows: the next use prepares it anew.
        m_prepared[orDefault(connectionName)].remove(statement);
        emit errorOccured(error);
    }
    return success;
}

void BaseDBProvider::clearPrepared()
{
    m_prepared.clear();
}

QSqlQuery *BaseDBProvider::preparedQuery(const QString &statement, const QString &connectionName)
{
    const QSqlDatabase database = QSqlDatabase::database(connectionName, false);
    if (!QueryRunner::isConnectionAlive(database)) {
        emit connectionError();
        return nullptr;
    }
    QHash<QString, QSqlQuery> &ofConnection = m_prepared[connectionName];
    auto place = ofConnection.find(statement);
    if (place == ofConnection.end()) {
        QSqlQuery query(database);
        query.setForwardOnly(true);
        if (!query.prepare(statement)) {
            emit errorOccured(query.lastError());
            return nullptr;
        }
        place = ofConnection.insert(statement, query);
    }
    return &place.value();
}

bool BaseDBProvider::runSyncInSlices(const QString &query, int sliceRows, const SliceTaker &take,
                                     const SliceKey &key)
{
    const QSqlDatabase database = openConnection(QString());
    if (!QueryRunner::isConnectionAlive(database)) {
        emit connectionError();
        return false;
    }
    QSqlQuery statement(database);
    statement.setForwardOnly(true);
    if (statement.exec(query))
        SliceReader(statement, sliceRows, key).readAll(take);
    const QSqlError error = statement.lastError();
    if (error.isValid())
        emit errorOccured(error);
    return !error.isValid();
}

bool BaseDBProvider::beginTransaction(const QString &connectionName)
{
    QSqlDatabase database = openConnection(connectionName);
    m_savepointLost = false;
    if (database.transaction())
        return true;
    emit errorOccured(database.lastError());
    return false;
}

bool BaseDBProvider::commitTransaction(const QString &connectionName)
{
    QSqlDatabase database = openConnection(connectionName);
    if (database.commit())
        return true;
    emit errorOccured(database.lastError());
    return false;
}

bool BaseDBProvider::rollbackTransaction(const QString &connectionName)
{
    // Silent: it follows a failure that was told already, and the back-end may have rolled back by itself.
    return openConnection(connectionName).rollback();
}

bool BaseDBProvider::setSavepoint()
{
    return runAsync(QStringLiteral("SAVEPOINT S1;"));
}

bool BaseDBProvider::releaseSavepoint()
{
    return runAsync(QStringLiteral("RELEASE SAVEPOINT S1;"));
}

bool BaseDBProvider::rollbackToSavepoint()
{
    // Without the release the name would pile up, one level for each failed item.
    const bool isBack = runAsync(QStringLiteral("ROLLBACK TO SAVEPOINT S1;")) && releaseSavepoint();
    m_savepointLost = m_savepointLost || !isBack;
    return isBack;
}

void BaseDBProvider::forwardErrors(const QueryRunner &runner)
{
    connect(&runner, &QueryRunner::connectionError, this, &BaseDBProvider::connectionError,
            Qt::DirectConnection);
    connect(&runner, &QueryRunner::errorOccured, this, &BaseDBProvider::errorOccured, Qt::DirectConnection);
}

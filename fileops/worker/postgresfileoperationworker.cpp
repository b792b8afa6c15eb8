#include "fileops/worker/postgresfileoperationworker.h"

#include "db/sql/abstractqueryconstructor.h"
#include "db/sql/changestamp.h"

#include <algorithm>

namespace {
constexpr int mostKeysAtOnce = 512;
} // namespace

void PostgresFileOperationWorker::prepareConnection()
{
    m_keys.clear();
    dropRows();
}

bool PostgresFileOperationWorker::insertRows(const QString &into, int columns, const QVariantList &values)
{
    if (!m_areRowsWaiting)
        return FileOperationWorker::insertRows(into, columns, values);
    m_rows.add(into, columns, values);
    return true;
}

void PostgresFileOperationWorker::beginRows()
{
    FileOperationWorker::beginRows();
    m_areRowsWaiting = true;
}

bool PostgresFileOperationWorker::writeRows()
{
    const QStringList statements = m_rows.take();
    dropRows();
    return std::all_of(statements.cbegin(), statements.cend(),
                       [this](const QString &statement) { return runAsync(statement); });
}

void PostgresFileOperationWorker::dropRows()
{
    m_rows.clear();
    m_areRowsWaiting = false;
    FileOperationWorker::dropRows();
}

bool PostgresFileOperationWorker::nextId(const QString &table, const QString &column, qint64 &id)
{
    Keys &keys = m_keys[table];
    if (keys.used == keys.ids.size() && !takeKeys(table, column, keys))
        return false;
    id = keys.ids.at(keys.used++);
    return true;
}

bool PostgresFileOperationWorker::takeKeys(const QString &table, const QString &column, Keys &keys)
{
    const QString statement = constructor()->nextIdQuery(column, table) +
                              QLatin1String("FROM generate_series(1, CAST(? AS integer));");
    const int count = qBound(1, 2 * keys.ids.size(), mostKeysAtOnce);
    TableData rows;
    if (!runFast(statement, {count}, rows))
        return false;
    keys.ids.clear();
    keys.used = 0;
    for (const TableRowData *row : qAsConst(rows))
        keys.ids.append(row->at(0).toLongLong());
    freeRows(rows);
    return !keys.ids.isEmpty();
}

bool PostgresFileOperationWorker::insertBrowsingNodeLink(qint64 parentId, qint64 childId)
{
    const QStringList columns = {QStringLiteral("parent_id"), QStringLiteral("child_id"),
                                 QStringLiteral("browsing_tree_id")};
    const QStringList row = {QString::number(parentId), QString::number(childId),
                             QString::number(browsingTreeId())};
    return runAsync(constructor()->insertQuery(columns, QStringLiteral("tb_node_links"), {row}) +
                    constructor()->statementEnd());
}

bool PostgresFileOperationWorker::commitTransaction(const QString &connectionName)
{
    const QDateTime lastChange = readLastChange();
    if (lastChange.isValid() && lastChange != m_ownChange)
        emit aboutToCommit(lastChange);
    const bool isCommitted = FileOperationWorker::commitTransaction(connectionName);
    // An operation may commit several times before the window hears of it.
    if (isCommitted) {
        m_ownChange = readLastChange();
        emit committed(m_ownChange);
    }
    return isCommitted;
}

bool PostgresFileOperationWorker::holdTags()
{
    // In the order in which a tag is removed. Others read on.
    return runAsync(QStringLiteral("LOCK TABLE file_tag, tag_group_links, tb_nodes, tag_relationships, tags "
                                   "IN SHARE ROW EXCLUSIVE MODE;"));
}

void PostgresFileOperationWorker::setPatient(bool isPatient)
{
    // The shortest that can be set; what the connection had comes back, however often it was set.
    static const QString impatient = QStringLiteral(
        "SELECT set_config('vorna.patience', CASE current_setting('lock_timeout') WHEN '1ms' "
        "THEN current_setting('vorna.patience', true) ELSE current_setting('lock_timeout') END, false), "
        "set_config('lock_timeout', '1', false);");
    static const QString patient =
        QStringLiteral("SELECT set_config('lock_timeout', "
                       "coalesce(nullif(current_setting('vorna.patience', true), ''), "
                       "current_setting('lock_timeout')), false);");
    TableData table;
    runAsync(isPatient ? patient : impatient, table);
    freeRows(table);
}

QDateTime PostgresFileOperationWorker::readLastChange()
{
    TableData table;
    const bool isRead = runAsync(ChangeStamp::query(*constructor()), table);
    QDateTime lastChange = isRead ? ChangeStamp::of(table) : QDateTime();
    freeRows(table);
    return lastChange;
}

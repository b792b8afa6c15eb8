#include "db/undo/rowreader.h"

#include "core/providers/chunks.h"
#include "db/sql/abstractqueryconstructor.h"

namespace {
/** The two drivers have many types for one number; a null has the type of its column. */
QVariant plain(const QVariant &value)
{
    if (value.isNull())
        return {};
    switch (value.type()) {
    case QVariant::Int:
    case QVariant::UInt:
    case QVariant::LongLong:
    case QVariant::ULongLong:
        return value.toLongLong();
    default:
        return value;
    }
}
} // namespace

RowReader::RowReader(const AbstractQueryConstructor *constructor, QObject *parent)
    : BaseDBProvider(constructor, parent)
{
}

RowReader::RowReader(const AbstractQueryConstructor *constructor, BaseDBProvider &runner,
                     const QString &connectionName)
    : BaseDBProvider(constructor), m_runner(&runner), m_connectionName(connectionName)
{
}

bool RowReader::execute(const QString &statement)
{
    return m_runner->runSync(statement, m_connectionName);
}

bool RowReader::readSlices(const QString &statement, const SliceTaker &take)
{
    return m_runner->runSyncInSlices(statement, Chunks::idsPerStatement, take, SliceKey(), m_connectionName);
}

const UndoTableInfo &RowReader::infoOf(UndoTable table)
{
    // In the order of UndoTable.
    static const QVector<UndoTableInfo> infos{
        {QStringLiteral("tags"), {QStringLiteral("tag_id")}},
        {QStringLiteral("tag_groups"), {QStringLiteral("tag_group_id")}},
        {QStringLiteral("tag_group_links"), {QStringLiteral("tag_group_id"), QStringLiteral("tag_id")}},
        {QStringLiteral("tb_nodes"), {QStringLiteral("node_id")}},
        {QStringLiteral("tb_node_links"), {QStringLiteral("child_id")}},
        {QStringLiteral("tb_autolinks"), {QStringLiteral("link_id")}},
        {QStringLiteral("tb_nodes_autolinks"), {QStringLiteral("node_id"), QStringLiteral("link_id")}},
        {QStringLiteral("tag_relationships"), {QStringLiteral("relationship_path")}},
        {QStringLiteral("files"), {QStringLiteral("file_id")}},
        {QStringLiteral("file_paths"), {QStringLiteral("path_id")}}};
    return infos.at(static_cast<int>(table));
}

QString RowReader::keyOf(UndoTable table, const QStringList &columns, const RowImage &row)
{
    QStringList key;
    for (const QString &column : infoOf(table).keyColumns)
        key.append(row.value(columns.indexOf(column)).toString());
    return key.join(QLatin1Char('/'));
}

bool RowReader::read(UndoTable table, const QString &column, const QStringList &values, RowImages &images)
{
    return Chunks::forEach(values, Chunks::idsPerStatement, [&](const QStringList &part) {
        TableData rows;
        const bool isRead =
            m_runner->runSync(constructor()->selectQuery({QStringLiteral("*")}, infoOf(table).name) +
                                  constructor()->whereClause(constructor()->inClause(column, part)) +
                                  constructor()->statementEnd(),
                              rows, m_connectionName);
        for (const TableRowData *row : qAsConst(rows)) {
            images.columns = row->columns();
            RowImage image;
            image.reserve(images.columns.size());
            for (int i = 0; i < images.columns.size(); ++i)
                image.append(plain(row->at(i)));
            images.rows.insert(keyOf(table, images.columns, image), image);
        }
        freeRows(rows);
        return isRead;
    });
}

bool RowReader::readIds(const QString &table, const QString &column, const QVector<qint64> &ids,
                        QSet<qint64> &found)
{
    const auto collect = [&found](const TableData &slice) {
        for (const TableRowData *row : slice)
            found.insert(row->at(0).toLongLong());
    };
    return Chunks::forEach(ids, Chunks::idsPerStatement, [&](const QVector<qint64> &part) {
        return readSlices(
            constructor()->selectQuery({column}, table, true) +
                constructor()->whereClause(constructor()->inClause(column, SqlText::idTexts(part))) +
                constructor()->statementEnd(),
            collect);
    });
}

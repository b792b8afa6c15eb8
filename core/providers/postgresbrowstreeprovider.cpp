#include "core/providers/postgresbrowstreeprovider.h"

#include "core/providers/singlevalue.h"
#include "db/sql/abstractqueryconstructor.h"
#include "db/sql/sqltext.h"
#include "db/sql/transaction.h"

#include <algorithm>

namespace {
const QLatin1String treesTable("browsing_trees");
} // namespace

PostgresBrowsTreeProvider::PostgresBrowsTreeProvider(const AbstractQueryConstructor *constructor,
                                                     QObject *parent)
    : BrowsTreeProvider(constructor, parent)
{
}

void PostgresBrowsTreeProvider::loadAllNodes()
{
    // A node whose link was not written belongs to no tree: it shows at the top level of each.
    const QString condition = SqlText::fill(
        QStringLiteral("(tb_node_links.browsing_tree_id=%1 OR tb_node_links.browsing_tree_id IS NULL)"),
        {QString::number(m_currentTree)});
    request(selectText() + constructor()->whereClause(condition) + constructor()->statementEnd(),
            &BrowsTreeProvider::gotAllNodesInfo);
}

void PostgresBrowsTreeProvider::loadAllTrees()
{
    request(constructor()->selectQuery({QStringLiteral("*")}, treesTable) + constructor()->statementEnd(),
            &BrowsTreeProvider::gotAllBrowsTreesInfo);
}

qint64 PostgresBrowsTreeProvider::addTree(const QString &name)
{
    const qint64 id =
        SingleValue::read(*this, treeInsertText(name) + constructor()->statementEnd()).toLongLong();
    if (id > 0)
        announce([this, id, name] { emit addedNewBrowsingTree(id, name); });
    return id;
}

bool PostgresBrowsTreeProvider::removeTree(qint64 id)
{
    const auto text = [this, id](QLatin1String table, QLatin1String condition) {
        return constructor()->deleteQuery(table) + SqlText::fill(condition, {QString::number(id)}) +
               constructor()->statementEnd();
    };
    // With its nodes, which nobody could reach any more.
    const QStringList statements = {
        text(QLatin1String("tb_nodes"), QLatin1String(" WHERE node_id IN (SELECT child_id FROM tb_node_links "
                                                      "WHERE browsing_tree_id=%1)")),
        text(QLatin1String("tb_node_links"), QLatin1String(" WHERE browsing_tree_id=%1")),
        text(treesTable, QLatin1String(" WHERE tree_id=%1 "))};
    Transaction transaction(*this);
    const bool isRemoved = transaction.isActive() &&
                           std::all_of(statements.cbegin(), statements.cend(),
                                       [this](const QString &statement) { return runSync(statement); });
    if (!isRemoved || !transaction.commit())
        return false;
    announce([this, id] { emit removedBrowsingTree(id); });
    return true;
}

bool PostgresBrowsTreeProvider::updateTree(qint64 id, const QString &column, const QString &value)
{
    TableData table;
    // no row: another client removed the tree
    const bool ok =
        runSync(treeUpdateText(id, column, value) + constructor()->statementEnd(), table) && !table.isEmpty();
    if (ok) {
        const qint64 treeId = table.constFirst()->at(0).toLongLong();
        const QString newName = table.constFirst()->at(1).toString();
        announce([this, treeId, newName] { emit updatedBrowsingTree(treeId, newName); });
    }
    freeRows(table);
    return ok;
}

void PostgresBrowsTreeProvider::setCurrentTree(qint64 id)
{
    m_currentTree = id > 0 ? id : defaultTree;
}

QStringList PostgresBrowsTreeProvider::nodeColumns() const
{
    return BrowsTreeProvider::nodeColumns() << QStringLiteral("tb_node_links.browsing_tree_id");
}

bool PostgresBrowsTreeProvider::insertNodes(const QVector<qint64> &tagIds, bool trOption, bool inverted,
                                            QVector<qint64> &ids)
{
    if (tagIds.isEmpty())
        return true;
    TableData rows;
    const QString statement = insertText(tagIds, trOption, inverted) + QLatin1String(" RETURNING node_id ") +
                              constructor()->statementEnd();
    const bool isDone = runSync(statement, rows) && rows.size() == tagIds.size();
    for (const TableRowData *row : qAsConst(rows))
        ids.append(row->at(0).toLongLong());
    freeRows(rows);
    return isDone;
}

QString PostgresBrowsTreeProvider::treeInsertText(const QString &name) const
{
    return constructor()->insertQuery({QStringLiteral("tree_name")}, treesTable, {{name}}) +
           QLatin1String(" RETURNING tree_id ");
}

QString PostgresBrowsTreeProvider::treeUpdateText(qint64 id, const QString &column,
                                                  const QString &value) const
{
    return constructor()->updateQuery({column}, treesTable, {value}) +
           SqlText::fill(QStringLiteral(" WHERE tree_id=%1"), {QString::number(id)}) +
           QLatin1String(" RETURNING tree_id, tree_name");
}

QString PostgresBrowsTreeProvider::linkInsertText(qint64 parentId, qint64 childId) const
{
    return constructor()->insertQuery(
        {QStringLiteral("parent_id"), QStringLiteral("child_id"), QStringLiteral("browsing_tree_id")},
        QStringLiteral("tb_node_links"),
        {{QString::number(parentId), QString::number(childId), QString::number(m_currentTree)}});
}

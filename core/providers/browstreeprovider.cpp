#include "core/providers/browstreeprovider.h"

#include "core/providers/chunks.h"
#include "core/providers/singlevalue.h"
#include "db/sql/abstractqueryconstructor.h"
#include "db/sql/transaction.h"

#include <algorithm>

namespace {
const QLatin1String nodesTable("tb_nodes");
const QLatin1String linksTable("tb_node_links");

QString flagText(bool isSet)
{
    return isSet ? QStringLiteral("1") : QStringLiteral("0");
}
} // namespace

BrowsTreeProvider::BrowsTreeProvider(const AbstractQueryConstructor *constructor, QObject *parent)
    : BaseDBProvider(constructor, parent)
{
}

void BrowsTreeProvider::loadAllNodes()
{
    request(selectText() + constructor()->statementEnd(), &BrowsTreeProvider::gotAllNodesInfo);
}

void BrowsTreeProvider::loadNodes(const QVector<qint64> &ids)
{
    Chunks::forEach(ids, Chunks::idsPerStatement, [this](const QVector<qint64> &part) {
        request(nodesText(part), &BrowsTreeProvider::gotNodesInfo);
        return true;
    });
}

QString BrowsTreeProvider::nodesText(const QVector<qint64> &ids) const
{
    return selectText() + SqlText::fill(QStringLiteral(" WHERE node_id IN (%1)"), {SqlText::idList(ids)}) +
           constructor()->statementEnd();
}

void BrowsTreeProvider::expectNodes(const QVector<qint64> &ids)
{
    expect(nodesText(ids));
}

bool BrowsTreeProvider::readNodes(const QVector<qint64> &ids, TableData &rows)
{
    return Chunks::forEach(ids, Chunks::idsPerStatement, [&](const QVector<qint64> &part) {
        TableData read;
        const bool isRead = runSync(nodesText(part), read);
        rows += read;
        return isRead;
    });
}

qint64 BrowsTreeProvider::addNode(qint64 tagId, bool trOption, bool inverted, qint64 parentId)
{
    const qint64 id = addNodes({tagId}, trOption, inverted, parentId).value(0);
    if (id > 0)
        // Behind the commit, when an edit of several statements is through as a whole.
        announce([this, id] { loadNode(id); });
    return id;
}

qint64 BrowsTreeProvider::addNodeAbove(qint64 tagId, bool trOption, bool inverted, qint64 parentId,
                                       qint64 childId)
{
    const qint64 id = addNodesAbove({tagId}, trOption, inverted, parentId, childId).value(0);
    if (id <= 0)
        return 0;
    // The new node must be among the records before its child moves below it.
    announce([this, id, childId] {
        loadNode(id);
        emit nodeParentUpdated({childId}, id);
    });
    return id;
}

QVector<qint64> BrowsTreeProvider::addNodes(const QVector<qint64> &tagIds, bool trOption, bool inverted,
                                            qint64 parentId)
{
    Transaction transaction(*this);
    QVector<qint64> ids;
    if (!transaction.isActive() || !insertNodes(tagIds, trOption, inverted, ids))
        return {};
    // A node without a link to its parent would be shown at the top.
    const bool areLinked =
        std::all_of(ids.cbegin(), ids.cend(), [this, parentId](qint64 id) { return addLink(parentId, id); });
    return areLinked && transaction.commit() ? ids : QVector<qint64>();
}

QVector<qint64> BrowsTreeProvider::addPath(const QVector<NodeStep> &steps, qint64 parentId)
{
    Transaction transaction(*this);
    QVector<qint64> ids;
    for (const NodeStep &step : steps) {
        QVector<qint64> inserted;
        if (transaction.isActive())
            insertNodes({step.tagId}, step.trOption, step.inverted, inserted);
        const qint64 id = inserted.value(0);
        if (id <= 0 || !addLink(ids.isEmpty() ? parentId : ids.last(), id))
            return {};
        ids.append(id);
    }
    return transaction.commit() ? ids : QVector<qint64>();
}

QVector<qint64> BrowsTreeProvider::addNodesAbove(const QVector<qint64> &tagIds, bool trOption, bool inverted,
                                                 qint64 parentId, qint64 childId)
{
    Transaction transaction(*this);
    QVector<qint64> ids;
    if (!transaction.isActive() || !insertNodes(tagIds, trOption, inverted, ids))
        return {};
    qint64 above = parentId;
    for (const qint64 id : qAsConst(ids)) {
        // Each below the one before, so that the tags stand one above the other.
        if (!addLink(above, id))
            return {};
        above = id;
    }
    return writeParent({childId}, above) && transaction.commit() ? ids : QVector<qint64>();
}

bool BrowsTreeProvider::addLink(qint64 parentId, qint64 childId)
{
    return runSync(linkInsertText(parentId, childId) + constructor()->statementEnd());
}

bool BrowsTreeProvider::removeNodes(const QVector<qint64> &ids)
{
    const QString statement =
        constructor()->deleteQuery(nodesTable) + QLatin1String(" WHERE node_id IN (%1)");
    if (ids.isEmpty())
        return true;
    if (!runForIds(statement, ids))
        return false;
    announce([this, ids] { emit nodesRemoved(ids); });
    return true;
}

bool BrowsTreeProvider::updateNode(qint64 id, const QString &column, const QString &value)
{
    const QString statement = constructor()->updateQuery({column}, nodesTable, {value}) +
                              SqlText::fill(QStringLiteral(" WHERE node_id=%1"), {QString::number(id)});
    if (!runEdit(statement + constructor()->statementEnd()))
        return false;
    announce([this, id, column, value] { emit nodeValueUpdated(id, column, value); });
    return true;
}

bool BrowsTreeProvider::updateParents(const QVector<QPair<qint64, QVector<qint64>>> &moves)
{
    QStringList pairs;
    for (const auto &[parentId, childIds] : moves) {
        for (const qint64 childId : childIds)
            pairs.append(QStringLiteral("(%1,%2)").arg(childId).arg(parentId));
    }
    // A statement each would take seconds for thousands of nodes that all get a parent of their own.
    const QString statement = QStringLiteral("UPDATE tb_node_links SET parent_id=moves.column2 "
                                             "FROM (VALUES %1) AS moves WHERE child_id=moves.column1");
    const auto write = [&](const QStringList &part) {
        return runSync(statement.arg(part.join(QLatin1Char(','))) + constructor()->statementEnd());
    };
    if (!Chunks::forEach(pairs, Chunks::idsPerStatement, write))
        return false;
    for (const auto &move : moves)
        announce([this, move] { emit nodeParentUpdated(move.second, move.first); });
    return true;
}

bool BrowsTreeProvider::writeParent(const QVector<qint64> &ids, qint64 parentId)
{
    const QString statement =
        constructor()->updateQuery({QStringLiteral("parent_id")}, linksTable, {QString::number(parentId)}) +
        QLatin1String(" WHERE child_id IN (%1)");
    return runForIds(statement, ids);
}

void BrowsTreeProvider::loadAutolinks() {}

bool BrowsTreeProvider::addAutolink(const QString &, const QString &, const QString &)
{
    return false;
}

bool BrowsTreeProvider::addAutolinkToNode(const QString &, qint64)
{
    return false;
}

bool BrowsTreeProvider::removeAutolinkFromNode(const QString &, qint64)
{
    return false;
}

bool BrowsTreeProvider::removeAutolink(const QString &)
{
    return false;
}

bool BrowsTreeProvider::updateAutolink(const QString &, const QString &, const QString &)
{
    return false;
}

void BrowsTreeProvider::loadAllTrees() {}

qint64 BrowsTreeProvider::addTree(const QString &)
{
    return 0;
}

bool BrowsTreeProvider::removeTree(qint64)
{
    return false;
}

bool BrowsTreeProvider::updateTree(qint64, const QString &, const QString &)
{
    return false;
}

void BrowsTreeProvider::setCurrentTree(qint64) {}

void BrowsTreeProvider::loadNode(qint64 id)
{
    const QString condition =
        SqlText::fill(QStringLiteral(" WHERE tb_nodes.node_id=%1"), {QString::number(id)});
    request(selectText() + condition + constructor()->statementEnd(), &BrowsTreeProvider::nodesAdded);
}

bool BrowsTreeProvider::removeLinks(const QVector<qint64> &childIds)
{
    return runForIds(constructor()->deleteQuery(linksTable) + QLatin1String(" WHERE child_id IN (%1)"),
                     childIds);
}

QStringList BrowsTreeProvider::nodeColumns() const
{
    return {QStringLiteral("tb_nodes.*"), QStringLiteral("tags.tag_name as node_name"),
            QStringLiteral("tb_node_links.parent_id as node_parent_id")};
}

QString BrowsTreeProvider::selectText() const
{
    const QString tags = constructor()->joinQuery(LeftJoin, QStringLiteral("tags"),
                                                  QStringLiteral("tags.tag_id=tb_nodes.tag_id"));
    const QString links = constructor()->joinQuery(LeftJoin, linksTable,
                                                   QStringLiteral("tb_node_links.child_id=tb_nodes.node_id"));
    return constructor()->selectQuery(nodeColumns(), nodesTable + tags + links);
}

QString BrowsTreeProvider::insertText(const QVector<qint64> &tagIds, bool trOption, bool inverted) const
{
    QVector<QStringList> rows;
    rows.reserve(tagIds.size());
    for (const qint64 tagId : tagIds)
        rows.append({QString::number(tagId), flagText(trOption), flagText(inverted)});
    return constructor()->insertQuery(
        {QStringLiteral("tag_id"), QStringLiteral("tr_options"), QStringLiteral("inverted")}, nodesTable,
        rows);
}

QString BrowsTreeProvider::linkInsertText(qint64 parentId, qint64 childId) const
{
    return constructor()->insertQuery({QStringLiteral("parent_id"), QStringLiteral("child_id")}, linksTable,
                                      {{QString::number(parentId), QString::number(childId)}});
}

bool BrowsTreeProvider::insertNodes(const QVector<qint64> &tagIds, bool trOption, bool inverted,
                                    QVector<qint64> &ids)
{
    for (const qint64 tagId : tagIds) {
        if (!runSync(insertText({tagId}, trOption, inverted) + constructor()->statementEnd()))
            return false;
        const qint64 id =
            SingleValue::read(*this, constructor()->lastIdQuery(QStringLiteral("node_id"))).toLongLong();
        if (id <= 0)
            return false;
        ids.append(id);
    }
    return true;
}

bool BrowsTreeProvider::runForIds(const QString &statement, const QVector<qint64> &ids)
{
    const auto run = [this, &statement](const QVector<qint64> &part) {
        return runSync(SqlText::fill(statement, {SqlText::idList(part)}) + constructor()->statementEnd());
    };
    // One statement is a transaction by itself and saves two messages to a server.
    if (ids.size() <= Chunks::idsPerStatement)
        return Chunks::forEach(ids, Chunks::idsPerStatement, run);
    Transaction transaction(*this);
    return transaction.isActive() && Chunks::forEach(ids, Chunks::idsPerStatement, run) &&
           transaction.commit();
}

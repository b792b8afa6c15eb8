#include "core/providers/tagremoval.h"

#include "core/providers/chunks.h"
#include "db/abstractqueryconstructor.h"
#include "db/transaction.h"

#include <QHash>
#include <QMap>
#include <QSet>

namespace {
/** The nearest ancestor that stays, 0 for the top level. */
qint64 survivingAncestor(qint64 nodeId, const QHash<qint64, qint64> &parents, const QSet<qint64> &removed)
{
    qint64 parent = parents.value(nodeId);
    // bounded, so that a circle in a damaged database ends at the top level
    for (int steps = removed.size(); removed.contains(parent); --steps) {
        if (steps <= 0)
            return 0;
        parent = parents.value(parent);
    }
    return parent;
}

bool holdsOneOf(const QString &path, const QSet<qint64> &tagIds)
{
    for (const QStringRef &piece : path.splitRef(QLatin1Char('.'))) {
        if (tagIds.contains(piece.toLongLong()))
            return true;
    }
    return false;
}

/** Where the children of removed nodes go; `links` are pairs of child and parent. */
QVector<QPair<qint64, QVector<qint64>>> liftedChildren(const QVector<QPair<qint64, qint64>> &links,
                                                       const QSet<qint64> &removed)
{
    QHash<qint64, qint64> parents;
    for (const QPair<qint64, qint64> &link : links)
        parents.insert(link.first, link.second);
    QMap<qint64, QVector<qint64>> moves;
    for (auto link = parents.cbegin(); link != parents.cend(); ++link) {
        if (!removed.contains(link.key()))
            moves[survivingAncestor(link.key(), parents, removed)].append(link.key());
    }
    QVector<QPair<qint64, QVector<qint64>>> result;
    for (auto move = moves.cbegin(); move != moves.cend(); ++move)
        result.append({move.key(), move.value()});
    return result;
}

QSet<qint64> setOf(const QVector<qint64> &ids)
{
    return QSet<qint64>(ids.constBegin(), ids.constEnd());
}
} // namespace

TagRemover::TagRemover(const AbstractQueryConstructor *constructor, QObject *parent)
    : NodeRemover(constructor, parent)
{
}

bool TagRemover::run(const TagRemovalPlan &plan)
{
    if (plan.tagIds.isEmpty())
        return NodeRemover::run(plan);
    Transaction transaction(*this);
    return transaction.isActive() && removeTags(plan) && transaction.commit();
}

bool TagRemover::removeTags(const TagRemovalPlan &plan)
{
    const QString tagId = QStringLiteral("tag_id");
    return removeWhere(QStringLiteral("file_tag"), tagId, plan.tagIds) &&
           removeWhere(QStringLiteral("tag_group_links"), tagId, plan.tagIds) && removeNodes(plan) &&
           removeUnknownNodes(plan.tagIds) && removePaths(plan) &&
           removeWhere(QStringLiteral("tags"), tagId, plan.tagIds);
}

bool TagRemover::removeUnknownNodes(const QVector<qint64> &tagIds)
{
    const QString nodeId = QStringLiteral("node_id");
    const QString tagId = QStringLiteral("tag_id");
    Pairs nodes;
    if (!readPairs(nodeId, tagId, QStringLiteral("tb_nodes"), tagId, tagIds, nodes))
        return false;
    NodeRemovalPlan plan;
    for (const QPair<qint64, qint64> &node : qAsConst(nodes))
        plan.removedNodeIds.append(node.first);

    const QString child = QStringLiteral("child_id");
    const QString parent = QStringLiteral("parent_id");
    Pairs links;
    for (const QString &column : {child, parent}) {
        if (!readPairs(child, parent, QStringLiteral("tb_node_links"), column, plan.removedNodeIds, links))
            return false;
    }
    plan.newParents = liftedChildren(links, setOf(plan.removedNodeIds));
    return removeNodes(plan);
}

bool TagRemover::removePaths(const TagRemovalPlan &plan)
{
    const QString table = QStringLiteral("tag_relationships");
    const QString column = QStringLiteral("relationship_path");
    QSet<QString> paths(plan.removedPaths.constBegin(), plan.removedPaths.constEnd());
    // One walk over the paths, as the LIKE condition of many tags would be tried on each of them anyway.
    const QSet<qint64> tagIds = setOf(plan.tagIds);
    const auto collect = [&paths, &tagIds](const TableData &slice) {
        for (const TableRowData *row : slice) {
            const QString path = row->at(0).toString();
            if (holdsOneOf(path, tagIds))
                paths.insert(path);
        }
    };
    return runSyncInSlices(constructor()->selectQuery({column}, table) + constructor()->statementEnd(),
                           Chunks::idsPerStatement, collect) &&
           removeWhere(table, column, QStringList(paths.constBegin(), paths.constEnd()));
}

bool TagRemover::readPairs(const QString &first, const QString &second, const QString &table,
                           const QString &column, const QVector<qint64> &ids, Pairs &pairs)
{
    const auto collect = [&pairs](const TableData &slice) {
        for (const TableRowData *row : slice)
            pairs.append({row->at(0).toLongLong(), row->at(1).toLongLong()});
    };
    return Chunks::forEach(ids, Chunks::idsPerStatement, [&](const QVector<qint64> &part) {
        const QString condition = constructor()->inClause(column, SqlText::idTexts(part));
        return runSyncInSlices(constructor()->selectQuery({first, second}, table) +
                                   constructor()->whereClause(condition) + constructor()->statementEnd(),
                               Chunks::idsPerStatement, collect);
    });
}

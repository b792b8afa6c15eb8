#include "db/removalplans.h"

#include "core/tbnode.h"
#include "db/caches/relationcache.h"

#include <QMap>
#include <QSet>

namespace {
/** The id of the nearest tag node above that stays, 0 for the top level. */
qint64 survivingAncestor(const TBnode *node, const QSet<qint64> &removed)
{
    const TBnode *above = node->parentNode();
    while (above && above->nodeType() == TagNode && removed.contains(above->id()))
        above = above->parentNode();
    return above && above->nodeType() == TagNode ? above->id() : 0;
}

/** The linked folders of the removed nodes that no other node uses. */
QStringList unusedAutolinks(const Map<qint64, TBnode *> &nodes, const QSet<qint64> &removed)
{
    QSet<QString> unused;
    for (const qint64 nodeId : removed) {
        for (const QString &link : nodes.value(nodeId)->autolinks())
            unused.insert(link);
    }
    if (unused.isEmpty())
        return {};
    for (const TBnode *node : nodes) {
        if (removed.contains(node->id()))
            continue;
        for (const QString &link : node->autolinks())
            unused.remove(link);
    }
    return unused.values();
}

QSet<qint64> knownOnes(const Map<qint64, TBnode *> &nodes, const QVector<qint64> &nodeIds)
{
    QSet<qint64> known;
    for (const qint64 nodeId : nodeIds) {
        if (nodes.contains(nodeId))
            known.insert(nodeId);
    }
    return known;
}

NodeRemovalPlan planFor(const Map<qint64, TBnode *> &nodes, const QSet<qint64> &removed)
{
    NodeRemovalPlan plan;
    QMap<qint64, QVector<qint64>> moves;
    for (const qint64 nodeId : removed) {
        plan.removedNodeIds.append(nodeId);
        for (const TBnode *child : nodes.value(nodeId)->children()) {
            if (!removed.contains(child->id()))
                moves[survivingAncestor(child, removed)].append(child->id());
        }
    }
    for (auto it = moves.cbegin(); it != moves.cend(); ++it)
        plan.newParents.append({it.key(), it.value()});
    plan.removedAutolinks = unusedAutolinks(nodes, removed);
    return plan;
}
} // namespace

NodeRemovalPlan RemovalPlans::subtrees(const Map<qint64, TBnode *> &nodes, const QVector<qint64> &nodeIds)
{
    QSet<qint64> removed = knownOnes(nodes, nodeIds);
    const QSet<qint64> tops = removed;
    for (const qint64 nodeId : tops) {
        const TBnode *node = nodes.value(nodeId);
        // What stands below another removed node comes with that one.
        if (node->parentNode() && tops.contains(node->parentNode()->id()))
            continue;
        for (const qint64 below : node->descendantIds())
            removed.insert(below);
    }
    return planFor(nodes, removed);
}

NodeRemovalPlan RemovalPlans::keepingChildren(const Map<qint64, TBnode *> &nodes,
                                              const QVector<qint64> &nodeIds)
{
    return planFor(nodes, knownOnes(nodes, nodeIds));
}

TagRemovalPlan RemovalPlans::tags(const Map<qint64, TBnode *> &nodes, const RelationCache &relations,
                                  const QVector<qint64> &tagIds)
{
    const QSet<qint64> removedTags(tagIds.cbegin(), tagIds.cend());
    QSet<qint64> removedNodes;
    for (const TBnode *node : nodes) {
        if (removedTags.contains(node->tagId()))
            removedNodes.insert(node->id());
    }
    TagRemovalPlan plan;
    static_cast<NodeRemovalPlan &>(plan) = planFor(nodes, removedNodes);
    plan.tagIds = tagIds;
    plan.removedPaths = relations.pathsWith(tagIds);
    return plan;
}

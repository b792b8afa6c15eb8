#include "db/manager/removalplans.h"

#include "core/records/tbnode.h"
#include "db/caches/relationcache.h"

#include <QHash>
#include <QMap>
#include <QSet>

namespace {
/** Where those below removed nodes go. Each removed node is passed once, however many stand below it. */
class SurvivingAncestors
{
public:
    explicit SurvivingAncestors(const QSet<qint64> &removed) : m_removed(removed) {}

    /** The id of the nearest tag node above that stays, 0 for the top level. */
    qint64 above(const TBnode *node)
    {
        QVector<qint64> way;
        const TBnode *above = node->parentNode();
        while (isRemoved(above) && !m_known.contains(above->id())) {
            way.append(above->id());
            above = above->parentNode();
        }
        // Fixed nodes stand for the top level: none of them is a parent in the database.
        qint64 found = above && above->nodeType() == TagNode ? above->id() : 0;
        if (isRemoved(above))
            found = m_known.value(above->id());
        for (const qint64 id : qAsConst(way))
            m_known.insert(id, found);
        return found;
    }

private:
    bool isRemoved(const TBnode *node) const
    {
        return node && node->nodeType() == TagNode && m_removed.contains(node->id());
    }

    const QSet<qint64> &m_removed;
    QHash<qint64, qint64> m_known;
};

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
    SurvivingAncestors ancestors(removed);
    for (const qint64 nodeId : removed) {
        plan.removedNodeIds.append(nodeId);
        for (const TBnode *child : nodes.value(nodeId)->children()) {
            if (!removed.contains(child->id()))
                moves[ancestors.above(child)].append(child->id());
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
    QSet<qint64> removed;
    QVector<const TBnode *> open;
    for (const qint64 nodeId : knownOnes(nodes, nodeIds))
        open.append(nodes.value(nodeId));
    while (!open.isEmpty()) {
        const TBnode *node = open.takeLast();
        // What stands below a node that was met before is noted, or still to come.
        if (removed.contains(node->id()))
            continue;
        removed.insert(node->id());
        for (const TBnode *child : node->children())
            open.append(child);
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

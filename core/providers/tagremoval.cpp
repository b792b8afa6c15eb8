#include "core/providers/tagremoval.h"

#include "core/providers/browstreeprovider.h"
#include "core/providers/chunks.h"
#include "core/providers/relationtreeprovider.h"
#include "core/providers/tagsprovider.h"
#include "db/sql/abstractqueryconstructor.h"
#include "db/sql/transaction.h"

#include <QHash>
#include <QMap>
#include <QSet>

#include <algorithm>

namespace {
/**
 * The nearest ancestor that stays, 0 for the top level. Removed nodes on the way are led there at once for
 * whoever asks next, so that each is passed once.
 */
qint64 survivingAncestor(qint64 nodeId, QHash<qint64, qint64> &parents, const QSet<qint64> &removed)
{
    QVector<qint64> way;
    qint64 parent = parents.value(nodeId);
    // bounded, so that a circle in a damaged database ends at the top level
    while (removed.contains(parent)) {
        way.append(parent);
        parent = way.size() > removed.size() ? 0 : parents.value(parent);
    }
    for (const qint64 passed : qAsConst(way))
        parents.insert(passed, parent);
    return parent;
}

/** Where the children of removed nodes go; `links` are pairs of child and parent. */
QVector<QPair<qint64, QVector<qint64>>> liftedChildren(const QVector<QPair<qint64, qint64>> &links,
                                                       const QSet<qint64> &removed)
{
    QHash<qint64, qint64> parents;
    for (const QPair<qint64, qint64> &link : links)
        parents.insert(link.first, link.second);
    QMap<qint64, QVector<qint64>> moves;
    for (const qint64 child : parents.keys()) {
        if (!removed.contains(child))
            moves[survivingAncestor(child, parents, removed)].append(child);
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

TagRemover::TagRemover(const AbstractQueryConstructor *constructor, TagsProvider &tags,
                       BrowsTreeProvider &nodes, RelationTreeProvider &relations, QObject *parent)
    : NodeRemover(constructor, nodes, parent), m_tags(tags), m_relations(relations)
{
}

bool TagRemover::run(const TagRemovalPlan &plan)
{
    if (plan.tagIds.isEmpty())
        return NodeRemover::run(plan);
    JointTransaction transaction(*this, {&m_tags, &nodes(), &m_relations});
    return transaction.isActive() && removeTags(plan) && transaction.commit();
}

bool TagRemover::removeTags(const TagRemovalPlan &plan)
{
    const QString tagId = QStringLiteral("tag_id");
    return unlinkFiles(plan.tagIds) && removeWhere(QStringLiteral("tag_group_links"), tagId, plan.tagIds) &&
           removeNodes(plan) && removeUnknownNodes(plan.tagIds) &&
           m_relations.removeByTags(plan.tagIds, plan.removedPaths) && m_tags.removeTags(plan.tagIds);
}

// No key of the table begins with the tag, so that all taggings are looked at: comparing with the bounds
// first spares most of them the search among many ids. The statement tells whose taggings went, as to look
// for them among a million records takes as long.
bool TagRemover::unlinkFiles(const QVector<qint64> &tagIds)
{
    m_unlinkedFileIds.clear();
    const auto collect = [this](const TableData &slice) {
        for (const TableRowData *row : slice)
            m_unlinkedFileIds.append(row->at(0).toLongLong());
    };
    const bool isDone = Chunks::forEach(tagIds, Chunks::idsPerStatement, [&](const QVector<qint64> &part) {
        const auto [lowest, highest] = std::minmax_element(part.cbegin(), part.cend());
        const QString bounds = SqlText::fill(QStringLiteral("tag_id BETWEEN %1 AND %2"),
                                             {QString::number(*lowest), QString::number(*highest)});
        const QString condition = bounds + constructor()->logicalOperator(AndOperator) +
                                  constructor()->inClause(QStringLiteral("tag_id"), SqlText::idTexts(part));
        return runSyncInSlices(constructor()->deleteQuery(QStringLiteral("file_tag")) +
                                   constructor()->whereClause(condition) +
                                   QLatin1String(" RETURNING file_id") + constructor()->statementEnd(),
                               Chunks::idsPerStatement, collect);
    });
    std::sort(m_unlinkedFileIds.begin(), m_unlinkedFileIds.end());
    m_unlinkedFileIds.erase(std::unique(m_unlinkedFileIds.begin(), m_unlinkedFileIds.end()),
                            m_unlinkedFileIds.end());
    return isDone;
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

#include "core/providers/noderemover.h"

#include "core/providers/browstreeprovider.h"
#include "core/providers/chunks.h"
#include "db/sql/abstractqueryconstructor.h"
#include "db/sql/transaction.h"

bool NodeRemovalPlan::isEmpty() const
{
    return removedNodeIds.isEmpty() && newParents.isEmpty() && removedAutolinks.isEmpty();
}

NodeRemover::NodeRemover(const AbstractQueryConstructor *constructor, BrowsTreeProvider &nodes,
                         QObject *parent)
    : BaseDBProvider(constructor, parent), m_nodes(nodes)
{
}

bool NodeRemover::run(const NodeRemovalPlan &plan)
{
    if (plan.isEmpty())
        return true;
    JointTransaction transaction(*this, {&m_nodes});
    return transaction.isActive() && removeNodes(plan) && transaction.commit();
}

bool NodeRemover::removeNodes(const NodeRemovalPlan &plan)
{
    return m_nodes.updateParents(plan.newParents) && m_nodes.removeNodes(plan.removedNodeIds) &&
           m_nodes.removeLinks(plan.removedNodeIds) &&
           removeWhere(QStringLiteral("tb_nodes_autolinks"), QStringLiteral("node_id"),
                       plan.removedNodeIds) &&
           removeWhere(QStringLiteral("tb_autolinks"), QStringLiteral("link_id"), plan.removedAutolinks);
}

bool NodeRemover::removeWhere(const QString &table, const QString &column, const QStringList &values)
{
    return Chunks::forEach(values, Chunks::idsPerStatement, [this, &table, &column](const QStringList &part) {
        return runSync(constructor()->deleteQuery(table) +
                       constructor()->whereClause(constructor()->inClause(column, part)) +
                       constructor()->statementEnd());
    });
}

bool NodeRemover::removeWhere(const QString &table, const QString &column, const QVector<qint64> &ids)
{
    return removeWhere(table, column, SqlText::idTexts(ids));
}

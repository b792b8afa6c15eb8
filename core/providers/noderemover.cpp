#include "core/providers/noderemover.h"

#include "core/providers/chunks.h"
#include "db/abstractqueryconstructor.h"
#include "db/transaction.h"

bool NodeRemovalPlan::isEmpty() const
{
    return removedNodeIds.isEmpty() && newParents.isEmpty() && removedAutolinks.isEmpty();
}

NodeRemover::NodeRemover(const AbstractQueryConstructor *constructor, QObject *parent)
    : BaseDBProvider(constructor, parent)
{
}

bool NodeRemover::run(const NodeRemovalPlan &plan)
{
    if (plan.isEmpty())
        return true;
    Transaction transaction(*this);
    return transaction.isActive() && removeNodes(plan) && transaction.commit();
}

bool NodeRemover::removeNodes(const NodeRemovalPlan &plan)
{
    const QString nodeId = QStringLiteral("node_id");
    for (const QPair<qint64, QVector<qint64>> &move : plan.newParents) {
        if (!moveNodes(move.second, move.first))
            return false;
    }
    return removeWhere(QStringLiteral("tb_nodes"), nodeId, plan.removedNodeIds) &&
           removeWhere(QStringLiteral("tb_node_links"), QStringLiteral("child_id"), plan.removedNodeIds) &&
           removeWhere(QStringLiteral("tb_nodes_autolinks"), nodeId, plan.removedNodeIds) &&
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

bool NodeRemover::moveNodes(const QVector<qint64> &nodeIds, qint64 parentId)
{
    const QString update = constructor()->updateQuery(
        {QStringLiteral("parent_id")}, QStringLiteral("tb_node_links"), {QString::number(parentId)});
    return Chunks::forEach(nodeIds, Chunks::idsPerStatement, [this, &update](const QVector<qint64> &part) {
        const QString condition = constructor()->inClause(QStringLiteral("child_id"), SqlText::idTexts(part));
        return runSync(update + constructor()->whereClause(condition) + constructor()->statementEnd());
    });
}

#include "ui/views/opennodes.h"

#include "core/records/nodetype.h"
#include "models/trees/brtreesortermodel.h"
#include "models/trees/treeroles.h"

#include <QSet>
#include <QTreeView>

QVector<qint64> OpenNodes::ids() const
{
    QVector<qint64> ids;
    QVector<QModelIndex> open{QModelIndex()};
    while (!open.isEmpty()) {
        const QModelIndex parent = open.takeLast();
        for (int row = 0; row < m_model.rowCount(parent); ++row) {
            const QModelIndex child = m_model.index(row, 0, parent);
            if (!m_view.isExpanded(child))
                continue;
            open.append(child);
            if (child.data(NodeRole::Type).toInt() == TagNode)
                ids.append(child.data(NodeRole::Id).toLongLong());
        }
    }
    return ids;
}

void OpenNodes::open(const QVector<qint64> &nodeIds)
{
    for (const qint64 id : nodeIds) {
        const QModelIndex index = m_model.indexOfNode(TagNode, id);
        if (index.isValid())
            m_view.expand(index);
    }
}

void OpenNodes::openTo(const QVector<qint64> &nodeIds)
{
    const QSet<qint64> those(nodeIds.cbegin(), nodeIds.cend());
    for (const qint64 id : nodeIds) {
        const QModelIndex parent = m_model.indexOfNode(TagNode, id).parent();
        if (those.contains(parent.data(NodeRole::Id).toLongLong()))
            continue;
        for (QModelIndex above = parent; above.isValid(); above = above.parent())
            m_view.expand(above);
    }
}

#include "models/trees/brtreesortermodel.h"

#include "app/settings/constants.h"
#include "app/settings/viewsettings.h"
#include "models/base/naturalorder.h"
#include "models/trees/nodeshost.h"
#include "models/trees/tbtreemodel.h"
#include "models/trees/treeroles.h"

#include <QDataStream>
#include <QMimeData>
#include <QTimer>

namespace {

/** The nodes that stand above the tags of "All files", in their order. */
const QVector<int> fixedTypes{AllFilesWithTags, AllFilesWithoutTags, AllInternalFiles,
                              AllExternalFiles, AllHyperlinks,       RecentlyAddedFiles};

struct NodeDrag
{
    qint64 nodeId = 0;
    /** Added by the view on the drop. */
    bool below = false;
};

NodeDrag readDrag(const QMimeData &data)
{
    NodeDrag drag;
    QDataStream stream(data.data(Constants::nodeMimeType));
    stream >> drag.nodeId;
    if (!stream.atEnd())
        stream >> drag.below;
    return drag;
}

qint64 idOf(const QModelIndex &index)
{
    return index.data(NodeRole::Id).toLongLong();
}

NodeType typeOf(const QModelIndex &index)
{
    return NodeType(index.data(NodeRole::Type).toInt());
}

} // namespace

BrTreeSorterModel::BrTreeSorterModel(NodesHost *host, QObject *parent)
    : QSortFilterProxyModel(parent), m_host(host), m_sortMode(ViewSettings::ManualSorting)
{
    // Renamed and added nodes take their places without a call from outside.
    setDynamicSortFilter(true);
    setSortCaseSensitivity(Qt::CaseInsensitive);
    setSortRole(Qt::DisplayRole);
    sort(0, Qt::AscendingOrder);
}

void BrTreeSorterModel::setSorting(int mode, AbstractNodesSorter *sorter)
{
    m_sortMode = mode;
    m_sorter = sorter;
    invalidate();
}

bool BrTreeSorterModel::lessThan(const QModelIndex &left, const QModelIndex &right) const
{
    const NodeType leftType = typeOf(left);
    const NodeType rightType = typeOf(right);
    if (leftType == TagNode && rightType == TagNode)
        return tagNodeLessThan(left, right);
    // Each fixed node stands once.
    if (leftType == rightType)
        return false;
    if (leftType == TagNode || rightType == TagNode)
        return rightType == TagNode;
    return fixedTypes.indexOf(leftType) < fixedTypes.indexOf(rightType);
}

bool BrTreeSorterModel::tagNodeLessThan(const QModelIndex &left, const QModelIndex &right) const
{
    const qint64 leftId = idOf(left);
    const qint64 rightId = idOf(right);
    if (m_sortMode == ViewSettings::AlphabeticalSorting) {
        const QString leftText = left.data().toString();
        const QString rightText = right.data().toString();
        // Nodes of one tag keep their order among each other.
        return leftText == rightText ? leftId < rightId : naturalLessThan(leftText, rightText);
    }
    if (m_sortMode == ViewSettings::ManualSorting && m_sorter)
        return m_sorter->lessThan(left.data(NodeRole::ParentId).toLongLong(), leftId, rightId);
    return leftId < rightId;
}

bool BrTreeSorterModel::filterAcceptsRow(int sourceRow, const QModelIndex &sourceParent) const
{
    if (!m_host)
        return false;
    const QModelIndex index = sourceModel()->index(sourceRow, 0, sourceParent);
    const bool isShown = typeOf(index) != TagNode ||
                         index.data(NodeRole::TreeId).toLongLong() == m_host->currentBrowsingTree();
    return isShown && QSortFilterProxyModel::filterAcceptsRow(sourceRow, sourceParent);
}

bool BrTreeSorterModel::canDropMimeData(const QMimeData *data, Qt::DropAction action, int row, int column,
                                        const QModelIndex &parent) const
{
    if (!m_host || !m_host->allowsManualMoves() || !data->hasFormat(Constants::nodeMimeType) ||
        !QSortFilterProxyModel::canDropMimeData(data, action, row, column, parent))
        return false;
    const QModelIndex dragged = indexOfNode(TagNode, readDrag(*data).nodeId);
    if (!dragged.isValid() || !parent.isValid())
        return false;
    if (dragged.parent() == parent) {
        // Between siblings; below "All files" not among the fixed nodes, which always come first.
        switch (typeOf(parent)) {
        case AllFiles:
            return row >= fixedTypes.size();
        case TagNode:
            return row >= 0;
        default:
            return false;
        }
    }
    // Dropped on a sibling itself, before or behind which it is to stand.
    return typeOf(parent) == TagNode && dragged.parent() == parent.parent() && row < 0 && column < 0;
}

bool BrTreeSorterModel::moveNode(const QModelIndex &index, int rows)
{
    const QModelIndex sibling = index.sibling(index.row() + rows, index.column());
    if (!m_sorter || !m_host || !m_host->allowsManualMoves() || typeOf(index) != TagNode ||
        typeOf(sibling) != TagNode)
        return false;
    m_sorter->moveNode(index.data(NodeRole::ParentId).toLongLong(), idOf(index), idOf(sibling), rows < 0);
    invalidate();
    emit orderChanged();
    return true;
}

bool BrTreeSorterModel::dropMimeData(const QMimeData *data, Qt::DropAction action, int row, int column,
                                     const QModelIndex &parent)
{
    if (!m_sorter || !canDropMimeData(data, action, row, column, parent))
        return false;
    const NodeDrag drag = readDrag(*data);
    const qint64 parentId = indexOfNode(TagNode, drag.nodeId).data(NodeRole::ParentId).toLongLong();
    if (row < 0)
        m_sorter->moveNode(parentId, drag.nodeId, idOf(parent), !drag.below);
    else
        // The sorter knows how many fixed nodes stand above.
        m_sorter->moveToRow(parentId, drag.nodeId, row);
    // The view still holds positions of the drag; the order changes when it has ended.
    QTimer::singleShot(0, this, [this] {
        invalidate();
        emit orderChanged();
    });
    return true;
}

QModelIndex BrTreeSorterModel::indexOfNode(NodeType type, qint64 id) const
{
    const auto *tree = qobject_cast<const TBtreeModel *>(sourceModel());
    if (!tree || !m_host)
        return {};
    const TBnode *node = type == TagNode ? m_host->nodeById(id) : tree->fixedNode(type);
    return mapFromSource(tree->indexOf(node));
}

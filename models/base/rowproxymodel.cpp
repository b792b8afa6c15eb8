#include "models/base/rowproxymodel.h"

QModelIndex RowProxyModel::index(int row, int column, const QModelIndex &parent) const
{
    const bool isInside = row >= 0 && row < rowCount(parent) && column >= 0 && column < columnCount(parent);
    return isInside ? createIndex(row, column) : QModelIndex();
}

QModelIndex RowProxyModel::parent(const QModelIndex & /*child*/) const
{
    return {};
}

QModelIndex RowProxyModel::sibling(int row, int column, const QModelIndex &index) const
{
    return index.isValid() ? this->index(row, column) : QModelIndex();
}

int RowProxyModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() || !sourceModel() ? 0 : sourceModel()->columnCount();
}

bool RowProxyModel::hasChildren(const QModelIndex &parent) const
{
    return rowCount(parent) > 0;
}

QVariant RowProxyModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    return sourceModel() ? sourceModel()->headerData(section, orientation, role) : QVariant();
}

bool RowProxyModel::removeRows(int /*row*/, int /*count*/, const QModelIndex & /*parent*/)
{
    return false;
}

void RowProxyModel::followSource(QAbstractItemModel *sourceModel)
{
    QAbstractProxyModel::setSourceModel(sourceModel); // NOLINT(bugprone-parent-virtual-call)
}

void RowProxyModel::beginSourceLayoutChange()
{
    emit layoutAboutToBeChanged({}, VerticalSortHint);
    m_layoutIndexes = persistentIndexList();
    m_layoutSources.clear();
    m_layoutSources.reserve(m_layoutIndexes.size());
    for (const QModelIndex &index : qAsConst(m_layoutIndexes))
        m_layoutSources.append(mapToSource(index));
}

void RowProxyModel::endSourceLayoutChange()
{
    QModelIndexList after;
    after.reserve(m_layoutSources.size());
    for (const QPersistentModelIndex &source : qAsConst(m_layoutSources))
        after.append(mapFromSource(source));
    changePersistentIndexList(m_layoutIndexes, after);
    m_layoutIndexes.clear();
    m_layoutSources.clear();
    emit layoutChanged({}, VerticalSortHint);
}

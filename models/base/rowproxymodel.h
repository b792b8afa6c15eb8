#pragma once

#include <QPersistentModelIndex>
#include <QSortFilterProxyModel>
#include <QVector>

/**
 * The common ground of flat proxies that keep their rows themselves: what a table without parents answers,
 * and the leading of persistent indexes over a change of layout. A subclass maps rows in mapToSource() and
 * mapFromSource(); none of the base class's mapping, sorting and pattern functions has an effect. GUI thread.
 */
class RowProxyModel : public QSortFilterProxyModel
{
    Q_OBJECT

public:
    using QSortFilterProxyModel::QSortFilterProxyModel;

    QModelIndex index(int row, int column, const QModelIndex &parent = QModelIndex()) const override;
    QModelIndex parent(const QModelIndex &child) const override;
    QModelIndex sibling(int row, int column, const QModelIndex &index) const override;
    int columnCount(const QModelIndex &parent = QModelIndex()) const override;
    bool hasChildren(const QModelIndex &parent = QModelIndex()) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;
    /** Removes nothing: files go by the controller. */
    bool removeRows(int row, int count, const QModelIndex &parent = QModelIndex()) override;

protected:
    /** Follows the source without the base class, whose mapping would stand beside the subclass's. */
    void followSource(QAbstractItemModel *sourceModel);

    // By the hint that whole rows move, selections and headers follow each row, not each of its cells.

    /** Maps rows anew, by a function, in one change of layout; the source stays as it is meanwhile. */
    template <typename Change>
    void changeLayout(Change change)
    {
        emit layoutAboutToBeChanged({}, VerticalSortHint);
        const QModelIndexList before = persistentIndexList();
        QModelIndexList sources;
        sources.reserve(before.size());
        for (const QModelIndex &index : before)
            sources.append(mapToSource(index));
        change();
        for (QModelIndex &index : sources)
            index = mapFromSource(index);
        changePersistentIndexList(before, sources);
        emit layoutChanged({}, VerticalSortHint);
    }

    /** The two halves of a change of layout that the source goes through; rows are mapped anew between. */
    void beginSourceLayoutChange();
    void endSourceLayoutChange();

private:
    QModelIndexList m_layoutIndexes;
    QVector<QPersistentModelIndex> m_layoutSources;
};

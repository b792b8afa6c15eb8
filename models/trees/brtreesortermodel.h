#pragma once

#include "core/records/nodetype.h"
#include "models/trees/abstractnodessorter.h"

#include <QSortFilterProxyModel>

class NodesHost;

/**
 * The order of the browsing tree: the fixed nodes first, then the nodes of tags by hand, by name or by id.
 * Hides the nodes of other trees of the database. Owned by its controller, on the GUI thread.
 */
class BrTreeSorterModel : public QSortFilterProxyModel
{
    Q_OBJECT

public:
    explicit BrTreeSorterModel(NodesHost *host, QObject *parent = nullptr);

    /** 1 by hand, 2 alphabetical, anything else by id. The order by hand is borrowed and may be null. */
    void setSorting(int mode, AbstractNodesSorter *sorter);
    int sortMode() const { return m_sortMode; }

    /** Where a node is shown, invalid when it is not; the id counts for nodes of tags alone. */
    QModelIndex indexOfNode(NodeType type, qint64 id) const;

    /** Gives a node the place of the sibling so many rows below. False where there is none to be moved. */
    bool moveNode(const QModelIndex &index, int rows);

    bool canDropMimeData(const QMimeData *data, Qt::DropAction action, int row, int column,
                         const QModelIndex &parent) const override;
    bool dropMimeData(const QMimeData *data, Qt::DropAction action, int row, int column,
                      const QModelIndex &parent) override;

signals:
    /** A node was given another place by hand. */
    void orderChanged();

protected:
    bool lessThan(const QModelIndex &left, const QModelIndex &right) const override;
    bool filterAcceptsRow(int sourceRow, const QModelIndex &sourceParent) const override;

private:
    bool tagNodeLessThan(const QModelIndex &left, const QModelIndex &right) const;

    NodesHost *m_host;
    AbstractNodesSorter *m_sorter = nullptr;
    int m_sortMode;
};

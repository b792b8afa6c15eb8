#pragma once

#include "models/trees/abstractnodessorter.h"

#include <QDataStream>
#include <QHash>
#include <QMetaType>
#include <QSet>

/**
 * The order of browsing nodes that a person has made by hand: for each parent the ids of its children. Nodes
 * without a place stand behind those with one, by their ids. A plain value that goes into the settings; the
 * tree is only borrowed and not copied into a stream.
 */
class ManualNodesSorter : public AbstractNodesSorter
{
public:
    bool lessThan(qint64 parentId, qint64 leftId, qint64 rightId) const override;
    void moveNode(qint64 parentId, qint64 nodeId, qint64 siblingId, bool before) override;
    void moveToRow(qint64 parentId, qint64 nodeId, int row) override;
    void nodeAdded(qint64 parentId, qint64 nodeId) override;
    void nodeRemoved(qint64 parentId, qint64 nodeId) override;
    void load(const QMap<qint64, QList<qint64>> &order) override;
    void save(QMap<qint64, QList<qint64>> &order) const override;
    void setTree(TBnode *root) override;

    /** Writes the present order of a node and its siblings down, so that the node's place is known. */
    void fixOrder(qint64 parentId, qint64 nodeId);
    /** Gives the place of a node to another one that came between it and its parent. */
    void replaceNode(qint64 parentId, qint64 nodeId, qint64 newId);

    /** Makes places for the children of nodes that are about to go: behind them, below a node that stays. */
    void liftChildren(const TBnode &parent, const QSet<qint64> &removed);

private:
    void appendLifted(const TBnode &removedNode, const QSet<qint64> &removed, QList<qint64> &list) const;
    /** The nodes of tags below a node, also those of other trees, in their order. */
    QList<const TBnode *> orderedChildren(const TBnode &parent) const;
    /** The list of a parent, filled up with all its children as they stand in the tree of one of them. */
    QList<qint64> &completeList(qint64 parentId, qint64 nodeId);
    const QHash<qint64, int> &positions(qint64 parentId) const;

    QMap<qint64, QList<qint64>> m_order;
    /** The place of each child in the list of its parent, made when it is first asked for. */
    mutable QHash<qint64, QHash<qint64, int>> m_positions;
    TBnode *m_root = nullptr;
};

QDataStream &operator<<(QDataStream &stream, const ManualNodesSorter &sorter);
QDataStream &operator>>(QDataStream &stream, ManualNodesSorter &sorter);

Q_DECLARE_METATYPE(ManualNodesSorter)

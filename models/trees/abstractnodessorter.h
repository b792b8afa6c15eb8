#pragma once

#include <QList>
#include <QMap>

class TBnode;

/**
 * An order of the children of each browsing node. Parents and children are named by node id; the parent of
 * top-level nodes is 0. All but the comparison may be left empty by an order that is not made by hand.
 */
class AbstractNodesSorter
{
public:
    AbstractNodesSorter() = default;
    AbstractNodesSorter(const AbstractNodesSorter &) = default;
    AbstractNodesSorter &operator=(const AbstractNodesSorter &) = default;
    virtual ~AbstractNodesSorter() = default;

    virtual bool lessThan(qint64 parentId, qint64 leftId, qint64 rightId) const = 0;
    /** Puts a node before or behind one of its siblings. */
    virtual void moveNode(qint64 parentId, qint64 nodeId, qint64 siblingId, bool before);
    /** Puts a node at a row of its parent as they are shown; at the top the fixed nodes count too. */
    virtual void moveToRow(qint64 parentId, qint64 nodeId, int row);
    virtual void nodeAdded(qint64 parentId, qint64 nodeId);
    virtual void nodeRemoved(qint64 parentId, qint64 nodeId);
    virtual void load(const QMap<qint64, QList<qint64>> &order);
    virtual void save(QMap<qint64, QList<qint64>> &order) const;
    /** The tree whose present children a missing list is built from; borrowed, may be null. */
    virtual void setTree(TBnode *root);
};

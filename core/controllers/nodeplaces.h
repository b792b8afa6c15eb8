#pragma once

#include "core/records/map.h"
#include "models/trees/manualnodessorter.h"

#include <QObject>
#include <QSet>
#include <QVariant>
#include <QVector>

class BrTreeSorterModel;
class BrowsTreeController;

/**
 * The places that nodes were given by hand: kept in the settings of the collection with each change, and
 * handed on where nodes come, go and take the place of others. Belongs to the controller of the nodes. GUI
 * thread.
 */
class NodePlaces : public QObject
{
    Q_OBJECT

public:
    NodePlaces(const BrowsTreeController &controller, BrTreeSorterModel *sorterModel);

    /** Reads the order and the way of sorting anew and applies both. */
    void read();
    /** The whole order, to be brought back later. */
    QVariant value() const { return QVariant::fromValue(m_order); }
    void setValue(const QVariant &value);

    /** Keeps the order in which the children of a parent stand now, the node among them. */
    void fix(qint64 parentId, qint64 nodeId);
    void nodesAdded(const Map<qint64, TBnode *> &nodes);
    /** Gives the place of a node below the parent to the one that stands above it there now. */
    void giveToTop(const TBnode *parent, qint64 nodeId);
    /** Lets the children of nodes that go take their places. */
    void keepForChildren(const QVector<qint64> &nodeIds);
    void nodeDeleted(qint64 nodeId);
    /** Gives up the places of deleted nodes, before their ids may be those of new ones. */
    void forgetDeleted();

private:
    void store();

    const BrowsTreeController &m_controller;
    BrTreeSorterModel *m_sorterModel; // the controller's
    ManualNodesSorter m_order;
    QSet<qint64> m_deleted; ///< still in the order
};

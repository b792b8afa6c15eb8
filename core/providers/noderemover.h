#pragma once

#include "db/sql/basedbprovider.h"

#include <QPair>
#include <QStringList>

class BrowsTreeProvider;

/** What goes and what moves when browsing nodes are removed. Computed from the records by the caller. */
struct NodeRemovalPlan
{
    QVector<qint64> removedNodeIds;
    /** A new parent (0 the top level) with the nodes that move below it. */
    QVector<QPair<qint64, QVector<qint64>>> newParents;
    /** Link ids of folders that no remaining node uses. */
    QStringList removedAutolinks;

    bool isEmpty() const;
};

/**
 * Removes browsing nodes with their links and the folders linked to them in one transaction: all of it or
 * nothing. The provider of the nodes does it and has its news ready when run() gives true. Lives for one
 * removal on the stack of its caller, GUI thread, default connection.
 */
class NodeRemover : public BaseDBProvider
{
    Q_OBJECT

public:
    NodeRemover(const AbstractQueryConstructor *constructor, BrowsTreeProvider &nodes,
                QObject *parent = nullptr);

    bool run(const NodeRemovalPlan &plan);

protected:
    /** The deletes without the transaction around them. */
    bool removeNodes(const NodeRemovalPlan &plan);
    /** "DELETE FROM table WHERE column IN (…)" for all values, in pieces. */
    bool removeWhere(const QString &table, const QString &column, const QStringList &values);
    bool removeWhere(const QString &table, const QString &column, const QVector<qint64> &ids);

    BrowsTreeProvider &nodes() const { return m_nodes; }

private:
    BrowsTreeProvider &m_nodes;
};

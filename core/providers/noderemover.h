#pragma once

#include "db/basedbprovider.h"

#include <QPair>
#include <QStringList>

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
 * nothing. Lives for one removal on the stack of its caller, GUI thread, default connection; it emits errors
 * only, and the caller merges the plan into its records when run() gives true.
 */
class NodeRemover : public BaseDBProvider
{
    Q_OBJECT

public:
    explicit NodeRemover(const AbstractQueryConstructor *constructor, QObject *parent = nullptr);

    bool run(const NodeRemovalPlan &plan);

protected:
    /** The deletes without the transaction around them. */
    bool removeNodes(const NodeRemovalPlan &plan);
    /** "DELETE FROM table WHERE column IN (…)" for all values, in pieces. */
    bool removeWhere(const QString &table, const QString &column, const QStringList &values);
    bool removeWhere(const QString &table, const QString &column, const QVector<qint64> &ids);

private:
    bool moveNodes(const QVector<qint64> &nodeIds, qint64 parentId);
};

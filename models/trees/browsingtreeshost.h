#pragma once

#include "models/base/edithost.h"

#include <QMap>
#include <QString>

/** The list of browsing trees on a server, and its edits, for BrowsingTreeTableModel. GUI thread. */
class BrowsingTreesHost : public virtual EditHost
{
public:
    /** The trees by id, the default one first; as last read. */
    virtual QMap<qint64, QString> browsingTrees() const = 0;
    /** Reads the list anew. */
    virtual void loadTrees() = 0;
    virtual qint64 currentBrowsingTree() const = 0;

    /** False when another tree has this name, or the database did not take it. */
    virtual bool addTree(const QString &name) = 0;
    virtual bool renameTree(qint64 treeId, const QString &name) = 0;
    virtual bool removeTree(qint64 treeId) = 0;
    /** Shows a tree from now on; false when it is gone. */
    virtual bool selectTree(qint64 treeId) = 0;
};

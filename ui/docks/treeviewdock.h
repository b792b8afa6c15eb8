#pragma once

#include "ui/docks/abstractdock.h"

class Collection;
class QTreeView;

/** A dock around one tree whose expansion survives a reload of the open database. */
class TreeViewDock : public AbstractDock
{
    Q_OBJECT

public:
    TreeViewDock(const QString &title, QTreeView *view, QWidget *parent);

    /** Lets the tree keep its expansion over every reload of a collection. */
    virtual void followReloads(Collection *collection) = 0;
};

#pragma once

#include "ui/docks/abstractdock.h"

class Collection;
class QTreeView;
class QVBoxLayout;

/** A dock around one tree whose expansion survives a reload of the open database. GUI thread. */
class TreeViewDock : public AbstractDock
{
    Q_OBJECT

public:
    TreeViewDock(const QString &title, QTreeView *view, QWidget *parent);

    /** Lets the tree keep its expansion over every reload of a collection. */
    virtual void followReloads(Collection *collection) = 0;

protected:
    /** A line over the tree, for as long as it is visible. */
    void putAboveTree(QWidget *line);

private:
    QVBoxLayout *m_layout;
};

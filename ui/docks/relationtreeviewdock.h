#pragma once

#include "ui/docks/treeviewdock.h"

class RelationsController;
class TRview;

/** The dock of the tag relationship trees. */
class RelationTreeViewDock : public TreeViewDock
{
    Q_OBJECT

public:
    explicit RelationTreeViewDock(QWidget *parent = nullptr);

    void setController(RelationsController *controller);
    void followReloads(Collection *collection) override;

private:
    TRview *m_view;
};

#pragma once

#include "ui/docks/treeviewdock.h"

class MainUi;
class RelationsController;
class RelationTyping;
class TRview;

/** The dock of the tag relationship trees. */
class RelationTreeViewDock : public TreeViewDock
{
    Q_OBJECT

public:
    explicit RelationTreeViewDock(QWidget *parent = nullptr);

    /** Behind the commands on tags, in their menu. */
    void takePlaces(MainUi &ui);
    void setController(RelationsController *controller);
    void followReloads(Collection *collection) override;

private:
    TRview *m_view;
    RelationTyping *m_typing;
};

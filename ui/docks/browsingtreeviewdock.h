#pragma once

#include "ui/docks/treeviewdock.h"

#include <QHash>
#include <QModelIndex>

class BrowsTreeController;
class ExportMenu;
class MainUi;
class NodeTyping;
class QAction;
class QMenu;
class TBtreeView;
struct ExportSelection;

/** The dock of the browsing tree and the home of the "Node" menu. */
class BrowsingTreeViewDock : public TreeViewDock
{
    Q_OBJECT

public:
    explicit BrowsingTreeViewDock(QWidget *parent = nullptr);

    /** Fills the "Node" menu. */
    void takePlaces(MainUi &ui);
    /** Null takes the tree away. */
    void setController(BrowsTreeController *controller);
    void followReloads(Collection *collection) override;

public slots:
    void slotExpandAllFiles();
    void updateActionsAvailability();
    void openContextMenu(const QPoint &position);
    void setNodeRelationships();
    void setNodeInverted();
    void addAutolink();
    void removeAutolink();
    void viewAutolink();
    void deleteSelectedNodes();
    void deleteSelectedNodeTree();
    /** Names the tree that is shown, where the database has several. */
    void updateTitle();

private:
    QMenu *makeLinkMenu();
    QAction *addAction(int key, const QString &text, const QString &icon = QString());
    /** Invalid when another kind of node, or none, is current. */
    QModelIndex currentTagNode() const;

    /** What the selected nodes show, one or several. */
    ExportSelection exportSelection() const;

    TBtreeView *m_view;
    ExportMenu *m_exports;
    NodeTyping *m_typing;
    BrowsTreeController *m_controller = nullptr;
    QHash<int, QAction *> m_actions;
};

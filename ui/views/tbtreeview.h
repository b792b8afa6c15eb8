#pragma once

#include "core/records/nodetype.h"
#include "ui/widgets/branchview.h"

#include <QPair>
#include <QSet>

class BrowsTreeController;

/**
 * The browsing tree as a surface for gestures: a click shows a node's files, dropped tags become nodes,
 * dropped files get the tags of a node, a dragged node gets another place. Borrows its controller.
 */
class TBtreeView : public BranchView
{
    Q_OBJECT

public:
    explicit TBtreeView(QWidget *parent = nullptr);

    /** Null takes the tree away. */
    void setController(BrowsTreeController *controller);
    /** The ids of the selected nodes of tags. */
    QVector<qint64> selectedNodeIds() const;

public slots:
    void slotExpandAllFiles();
    void deleteSelectedNodes();
    void deleteSelectedNodeTree();
    void activatedNode(const QModelIndex &index);
    /** Notes which nodes are open and which are selected, so that a reload can be survived. */
    void saveExpandedState();
    void saveExpandedState(const QModelIndex &parent);
    void restoreExpandedState();
    void restoreExpandedState(const QModelIndex &parent);
    /** Leaves a row that a menu or the keys made current without showing its files. */
    void returnToShownNode();

protected:
    void startDrag(Qt::DropActions supportedActions) override;
    void dragEnterEvent(QDragEnterEvent *event) override;
    void dragMoveEvent(QDragMoveEvent *event) override;
    void dropEvent(QDropEvent *event) override;
    void focusInEvent(QFocusEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;

private:
    using NodeKey = QPair<NodeType, qint64>;

    bool confirmDeletion(const QVector<qint64> &ids);
    void deleteNodes(void (BrowsTreeController::*remove)(const QVector<qint64> &));
    bool isAboveCentre(const QPoint &position) const;
    void restoreSelection();
    void followFocus(const QWidget *now);
    void clickedNode(const QModelIndex &index);
    /** The node whose files are shown; invalid when something else is shown. */
    QModelIndex shownNode() const;
    /** Makes the node whose files are shown the selected one; none when something else is shown. */
    void followShownNode();
    /** Takes tags, files and addresses over the nodes that they can be dropped on. */
    void judgeForeignDrag(QDragMoveEvent *event, const QModelIndex &target);
    void dropNode(QDropEvent *event);
    void dropOnNode(QDropEvent *event, qint64 nodeId);
    void dropTags(QDropEvent *event, qint64 nodeId);
    /** Whether a node made by a drop of tags goes above its target. */
    bool asksForAbove(const QDropEvent &event, qint64 nodeId);

    BrowsTreeController *m_controller = nullptr;
    QSet<qint64> m_expandedNodes;
    QVector<NodeKey> m_selectedNodes; ///< the current one first, while it is selected
    int m_scrollPosition = 0;
};

#include "ui/views/tbtreeview.h"

#include "app/messages/messages.h"
#include "app/settings/constants.h"
#include "app/settings/viewsettings.h"
#include "core/controllers/browstreecontroller.h"
#include "core/records/nodetype.h"
#include "core/records/tbnode.h"
#include "models/base/droppedurls.h"
#include "models/base/idlistmime.h"
#include "models/counts/nodecounts.h"
#include "models/trees/brtreesortermodel.h"
#include "models/trees/treeroles.h"
#include "ui/widgets/hoveropener.h"
#include "ui/widgets/treecountdelegate.h"
#include "ui/widgets/viewstyle.h"

#include <QApplication>
#include <QDataStream>
#include <QDrag>
#include <QDropEvent>
#include <QMenu>
#include <QMenuBar>
#include <QMimeData>
#include <QScrollBar>

namespace {

NodeType typeOf(const QModelIndex &index)
{
    return NodeType(index.data(NodeRole::Type).toInt());
}

qint64 idOf(const QModelIndex &index)
{
    return index.data(NodeRole::Id).toLongLong();
}

bool takesDrops(const QModelIndex &index)
{
    return index.isValid() && (typeOf(index) == AllFiles || typeOf(index) == TagNode);
}

bool isNodeDrag(const QDropEvent &event)
{
    return event.mimeData()->hasFormat(Constants::nodeMimeType);
}

bool isForeignDrag(const QDropEvent &event)
{
    const QMimeData *data = event.mimeData();
    return data->hasFormat(Constants::tagMimeType) || data->hasFormat(Constants::fileMimeType) ||
           data->hasUrls();
}

/** What comes from elsewhere is never taken away from there: a moved file would be deleted by its owner. */
void acceptAsCopy(QDropEvent *event)
{
    event->setDropAction(Qt::CopyAction);
    event->accept();
}

} // namespace

TBtreeView::TBtreeView(QWidget *parent) : BranchView(parent)
{
    setObjectName(QStringLiteral("tbView"));
    setAccessibleName(tr("Browsing Tree"));
    setSelectionMode(QAbstractItemView::ExtendedSelection);
    setDefaultDropAction(Qt::MoveAction);
    auto *style = new ViewStyle;
    style->setParent(this);
    setStyle(style);
    setItemDelegate(new TreeCountDelegate(NodeRole::FileCount, this));
    // Numbers stand at the edge of the view, and do not move with the names.
    connect(horizontalScrollBar(), &QScrollBar::valueChanged, viewport(), qOverload<>(&QWidget::update));
    connect(this, &QAbstractItemView::clicked, this, &TBtreeView::clickedNode);
    connect(qApp, &QApplication::focusChanged, this,
            [this](const QWidget * /*old*/, const QWidget *now) { followFocus(now); });
}

void TBtreeView::setController(BrowsTreeController *controller)
{
    if (model())
        disconnect(model(), nullptr, this, nullptr);
    if (m_controller)
        disconnect(m_controller, nullptr, this, nullptr);
    if (m_controller)
        disconnect(m_controller->counts(), nullptr, viewport(), nullptr);
    m_controller = controller;
    m_expandedNodes.clear();
    m_selectedNodes.clear();
    setModel(controller ? controller->sorterModel() : nullptr);
    setEnabled(controller);
    if (!model())
        return;
    // Made behind setModel, so that the selection is restored when its model has forgotten it.
    connect(model(), &QAbstractItemModel::modelAboutToBeReset, this,
            qOverload<>(&TBtreeView::saveExpandedState));
    connect(model(), &QAbstractItemModel::modelReset, this, qOverload<>(&TBtreeView::restoreExpandedState));
    // Branches that move come back closed.
    connect(controller, &BrowsTreeController::aboutToMoveBranches, this,
            qOverload<>(&TBtreeView::saveExpandedState));
    connect(controller, &BrowsTreeController::branchesMoved, this,
            qOverload<>(&TBtreeView::restoreExpandedState));
    connect(controller, &BrowsTreeController::currentNodeChanged, this, &TBtreeView::followShownNode);
    connect(controller, &BrowsTreeController::nodeSaved, this, [this] { scrollTo(shownNode()); });
    // One painting of what shows, whichever of the numbers are others.
    connect(controller->counts(), &NodeCounts::changed, viewport(), qOverload<>(&QWidget::update));
    expand(model()->index(0, 0));
}

QModelIndex TBtreeView::shownNode() const
{
    const int type = m_controller->currentNodeType();
    return type == 0
               ? QModelIndex()
               : m_controller->sorterModel()->indexOfNode(NodeType(type), m_controller->currentNodeId());
}

void TBtreeView::followShownNode()
{
    if (!m_controller || !selectionModel())
        return;
    const QModelIndex shown = shownNode();
    if (!shown.isValid())
        selectionModel()->clear();
    else if (shown != currentIndex() || !selectionModel()->isSelected(shown))
        makeCurrent(shown);
}

void TBtreeView::returnToShownNode()
{
    // Several rows are selected for a command that is still to come.
    if (selectionModel() && selectionModel()->selectedRows().size() <= 1)
        followShownNode();
}

QVector<qint64> TBtreeView::selectedNodeIds() const
{
    QVector<qint64> ids;
    if (!selectionModel())
        return ids;
    for (const QModelIndex &index : selectionModel()->selectedRows()) {
        if (typeOf(index) == TagNode)
            ids.append(idOf(index));
    }
    return ids;
}

void TBtreeView::slotExpandAllFiles()
{
    expandAll();
}

void TBtreeView::deleteSelectedNodes()
{
    deleteNodes(&BrowsTreeController::removeNodes);
}

void TBtreeView::deleteSelectedNodeTree()
{
    deleteNodes(&BrowsTreeController::removeNodesWithSubtree);
}

void TBtreeView::deleteNodes(void (BrowsTreeController::*remove)(const QVector<qint64> &))
{
    const QVector<qint64> ids = selectedNodeIds();
    if (ids.isEmpty() || !mayEdit(m_controller) || !confirmDeletion(ids))
        return;
    // The database may have been closed behind the question.
    if (m_controller)
        (m_controller->*remove)(ids);
}

bool TBtreeView::confirmDeletion(const QVector<qint64> &ids)
{
    if (!m_controller->hasChildren(ids))
        return true;
    Messages::Box box;
    box.icon = QMessageBox::Warning;
    box.text = ids.size() == 1 ? tr("Do you really want to delete a non-leaf node from this tree?")
                               : tr("Do you really want to delete non-leaf nodes from this tree?");
    box.buttons = QMessageBox::Ok | QMessageBox::Cancel;
    box.defaultButton = QMessageBox::Cancel;
    return Messages::run(this, box).button == QMessageBox::Ok;
}

void TBtreeView::activatedNode(const QModelIndex &index)
{
    if (!m_controller || !index.isValid())
        return;
    QVector<qint64> required;
    QVector<qint64> excluded;
    const NodeType type = typeOf(index);
    const qint64 id = idOf(index);
    if (type == TagNode) {
        if (const TBnode *node = m_controller->nodeById(id))
            node->collectTagRequirements(required, excluded);
    }
    m_controller->nodeActivated(type, id, required, excluded);
}

void TBtreeView::clickedNode(const QModelIndex &index)
{
    if (!m_controller || !selectionModel() || selectionModel()->isSelected(index)) {
        activatedNode(index);
        return;
    }
    // A click with Ctrl has taken the row out of the selection, whose files are shown from now on.
    const QModelIndexList rest = selectionModel()->selectedRows();
    const QModelIndex shown = shownNode();
    if (rest.isEmpty()) {
        followShownNode();
        return;
    }
    const bool isShown = rest.contains(shown);
    selectionModel()->setCurrentIndex(isShown ? shown : rest.last(), QItemSelectionModel::NoUpdate);
    if (!isShown)
        activatedNode(rest.last());
}

void TBtreeView::saveExpandedState()
{
    m_expandedNodes.clear();
    m_selectedNodes.clear();
    if (!model())
        return;
    saveExpandedState(QModelIndex());
    m_scrollPosition = verticalScrollBar()->value();
    const QModelIndex current = currentIndex();
    if (selectionModel()->isSelected(current))
        m_selectedNodes.append({typeOf(current), idOf(current)});
    for (const QModelIndex &index : selectionModel()->selectedRows()) {
        if (index != current)
            m_selectedNodes.append({typeOf(index), idOf(index)});
    }
}

void TBtreeView::saveExpandedState(const QModelIndex &parent)
{
    if (!model())
        return;
    for (int row = 0; row < model()->rowCount(parent); ++row) {
        const QModelIndex child = model()->index(row, 0, parent);
        if (!isExpanded(child))
            continue;
        m_expandedNodes.insert(idOf(child));
        saveExpandedState(child);
    }
}

void TBtreeView::restoreExpandedState()
{
    if (!model())
        return;
    // With a layout pending the view only notes what is open; else it would lay out anew for each node.
    scheduleDelayedItemsLayout();
    restoreExpandedState(QModelIndex());
    restoreSelection();
    executeDelayedItemsLayout();
    verticalScrollBar()->setValue(m_scrollPosition);
}

void TBtreeView::restoreExpandedState(const QModelIndex &parent)
{
    if (!model())
        return;
    for (int row = 0; row < model()->rowCount(parent); ++row) {
        const QModelIndex child = model()->index(row, 0, parent);
        if (!m_expandedNodes.contains(idOf(child)))
            continue;
        setExpanded(child, true);
        restoreExpandedState(child);
    }
}

void TBtreeView::restoreSelection()
{
    QItemSelection selection;
    QModelIndex current;
    for (const NodeKey &key : qAsConst(m_selectedNodes)) {
        const QModelIndex index = m_controller->sorterModel()->indexOfNode(key.first, key.second);
        if (!index.isValid())
            continue;
        selection.select(index, index);
        if (!current.isValid())
            current = index;
    }
    if (!current.isValid()) {
        // In place of rows that went the base selects their neighbours.
        followShownNode();
        return;
    }
    selectionModel()->setCurrentIndex(current, QItemSelectionModel::NoUpdate);
    selectionModel()->select(selection, QItemSelectionModel::ClearAndSelect);
}

void TBtreeView::focusInEvent(QFocusEvent *event)
{
    const bool hadCurrent = currentIndex().isValid();
    BranchView::focusInEvent(event);
    // The base selects the first row then, though its files are not shown.
    if (!hadCurrent && selectionModel())
        selectionModel()->clearSelection();
}

void TBtreeView::followFocus(const QWidget *now)
{
    // The menus have commands on the current row.
    const bool isElsewhere = now && now != this && now->window() == window() && !isAncestorOf(now);
    if (isElsewhere && !qobject_cast<const QMenuBar *>(now))
        returnToShownNode();
}

void TBtreeView::startDrag(Qt::DropActions supportedActions)
{
    // Without the picture of the row, which would cover the line that shows the new place.
    const QModelIndex dragged = currentIndex();
    QMimeData *data =
        dragged.flags().testFlag(Qt::ItemIsDragEnabled) ? model()->mimeData({dragged}) : nullptr;
    if (!data)
        return;
    auto *drag = new QDrag(this);
    drag->setMimeData(data);
    drag->exec(supportedActions, Qt::MoveAction);
    // What was pressed to be dragged has become current, though nobody asked for its files.
    followShownNode();
}

void TBtreeView::dragEnterEvent(QDragEnterEvent *event)
{
    BranchView::dragEnterEvent(event);
    if (!m_controller || m_controller->isReadOnly()) {
        event->ignore();
        return;
    }
    keepCurrent();
    if (isNodeDrag(*event))
        event->acceptProposedAction();
    else if (isForeignDrag(*event))
        acceptAsCopy(event);
}

void TBtreeView::dragMoveEvent(QDragMoveEvent *event)
{
    const QModelIndex target = indexAt(event->pos());
    setProperty("is_above", isAboveCentre(event->pos()));
    // The base class knows the model's own type alone, so what comes from elsewhere is judged behind it.
    setDropIndicatorShown(true);
    BranchView::dragMoveEvent(event);
    if (!isNodeDrag(*event))
        judgeForeignDrag(event, target);
    // Else the line would stay at the last place that was one.
    setDropIndicatorShown(event->isAccepted());
    if (!event->isAccepted())
        viewport()->update();
    hoverOpener()->hover(m_controller && !m_controller->isReadOnly() ? target : QModelIndex());
}

void TBtreeView::judgeForeignDrag(QDragMoveEvent *event, const QModelIndex &target)
{
    if (!m_controller || m_controller->isReadOnly() || !takesDrops(target) || !isForeignDrag(*event)) {
        event->ignore();
        restoreCurrent();
        return;
    }
    makeCurrent(target);
    acceptAsCopy(event);
}

void TBtreeView::dropEvent(QDropEvent *event)
{
    hoverOpener()->stop();
    if (!m_controller || m_controller->isReadOnly()) {
        event->ignore();
        return;
    }
    if (isNodeDrag(*event)) {
        dropNode(event);
        return;
    }
    stopAutoScroll();
    setState(QAbstractItemView::NoState);
    viewport()->update();
    const QModelIndex target = indexAt(event->pos());
    if (!takesDrops(target) || !isForeignDrag(*event)) {
        event->ignore();
        return;
    }
    acceptAsCopy(event);
    const NodeKey key(typeOf(target), idOf(target));
    // The target was current to be seen; what is shown stays as it was.
    restoreCurrent();
    dropOnNode(event, key.second);
    if (!m_controller)
        return;
    // A node above the target takes the target out and in again, so its index is looked up anew.
    const QModelIndex present = m_controller->sorterModel()->indexOfNode(key.first, key.second);
    expand(present);
    // It may have gone below the new node.
    scrollTo(present);
    if (m_controller->currentNodeType() != 0)
        followShownNode();
}

void TBtreeView::dropNode(QDropEvent *event)
{
    qint64 nodeId = 0;
    QDataStream(event->mimeData()->data(Constants::nodeMimeType)) >> nodeId;
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    stream << nodeId << !isAboveCentre(event->pos());
    QMimeData data;
    data.setData(Constants::nodeMimeType, bytes);
    QDropEvent placed(event->posF(), event->possibleActions(), &data, event->mouseButtons(),
                      event->keyboardModifiers());
    placed.setDropAction(event->dropAction());
    BranchView::dropEvent(&placed);
    event->setDropAction(placed.dropAction());
    event->setAccepted(placed.isAccepted());
}

void TBtreeView::dropOnNode(QDropEvent *event, qint64 nodeId)
{
    const QMimeData *data = event->mimeData();
    if (data->hasFormat(Constants::fileMimeType))
        m_controller->addFilesToNode(nodeId, IdListMime::unpack(data, Constants::fileMimeType));
    else if (data->hasUrls())
        m_controller->addUrlsToNode(nodeId, DroppedUrls::of(*data));
    if (m_controller && data->hasFormat(Constants::tagMimeType))
        dropTags(event, nodeId);
}

void TBtreeView::dropTags(QDropEvent *event, qint64 nodeId)
{
    const QVector<qint64> tagIds =
        m_controller->knownTags(IdListMime::unpack(event->mimeData(), Constants::tagMimeType));
    if (tagIds.isEmpty())
        return;
    const bool above = asksForAbove(*event, nodeId);
    // The question has waited: the node, or the whole database, may have gone meanwhile.
    if (m_controller && m_controller->nodeById(nodeId))
        m_controller->addTagNodes(tagIds, nodeId, above);
}

bool TBtreeView::asksForAbove(const QDropEvent &event, qint64 nodeId)
{
    if (nodeId <= 0)
        return false;
    if (event.keyboardModifiers() & Qt::AltModifier)
        return true;
    if (!ViewSettings::asksForNodePlace())
        return false;
    constexpr int liftedPixels = 15;
    QMenu menu(tr("Create new node"), this);
    const QAction *above = menu.addAction(tr("Add above"));
    menu.addAction(tr("Add below"));
    return menu.exec(viewport()->mapToGlobal(event.pos() - QPoint(0, liftedPixels))) == above;
}

bool TBtreeView::isAboveCentre(const QPoint &position) const
{
    return position.y() < visualRect(indexAt(position)).center().y();
}

void TBtreeView::keyPressEvent(QKeyEvent *event)
{
    if (event->matches(QKeySequence::Delete)) {
        deleteSelectedNodes();
        event->accept();
    } else if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
        activatedNode(currentIndex());
        event->accept();
    } else {
        BranchView::keyPressEvent(event);
    }
}

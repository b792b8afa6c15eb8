#include "ui/views/trview.h"

#include "app/messages/messages.h"
#include "app/settings/constants.h"
#include "core/controllers/collection.h"
#include "core/controllers/collectionsettings.h"
#include "core/controllers/relationscontroller.h"
#include "models/base/idlistmime.h"
#include "models/trees/treeroles.h"
#include "models/trees/trmodel.h"
#include "ui/widgets/emptyhint.h"
#include "ui/widgets/greenground.h"
#include "ui/widgets/hoveropener.h"

#include <QDrag>
#include <QDropEvent>
#include <QGuiApplication>
#include <QMenu>
#include <QMimeData>
#include <QScrollBar>

#include <algorithm>

TRview::TRview(QWidget *parent) : BranchView(parent)
{
    setObjectName(QStringLiteral("trView"));
    setAccessibleName(tr("Tag Relationships"));
    setDropIndicatorShown(false);
    updateGround();
    connect(qGuiApp, &QGuiApplication::paletteChanged, this, &TRview::updateGround);
    connect(this, &QWidget::customContextMenuRequested, this, &TRview::openContextMenu);
    // Shown behind the drop: a box within it would hold up the program that the drag comes from.
    connect(this, &TRview::tagRelationshipNotAllowed, this, &TRview::showRefusal, Qt::QueuedConnection);
}

void TRview::showRefusal()
{
    Messages::warning(this, tr("Error creating tag relationship"),
                      tr("This is an illegal tag relationship."));
}

void TRview::setController(RelationsController *controller)
{
    if (m_controller) {
        saveExpandedState();
        m_controller->collection()->settings()->setRelationExpansion(m_expandedPaths);
    }
    m_controller = controller;
    setModel(controller ? controller->model() : nullptr);
    setEnabled(controller);
    m_expandedPaths.clear();
    m_currentPath.clear();
    m_scrollPosition = 0;
    if (controller) {
        m_expandedPaths = controller->collection()->settings()->relationExpansion();
        restoreExpandedState();
    }
}

bool TRview::isWritable() const
{
    return m_controller && !m_controller->isReadOnly();
}

void TRview::deleteSelectedNode()
{
    const QModelIndex index = currentIndex();
    if (!index.isValid() || !mayEdit(m_controller))
        return;
    const QString path = index.data(RelationRole::Path).toString();
    if (model()->rowCount(index) > 0 && !confirmDeletion())
        return;
    // The database may have been closed behind the question.
    if (m_controller)
        m_controller->removeNode(path);
}

bool TRview::confirmDeletion()
{
    Messages::Box box;
    box.icon = QMessageBox::Warning;
    box.text = tr("Do you really want to delete a non-leaf node from this tree?");
    box.buttons = QMessageBox::Ok | QMessageBox::Cancel;
    box.defaultButton = QMessageBox::Cancel;
    return Messages::run(this, box).button == QMessageBox::Ok;
}

void TRview::deleteSelectedSubtree()
{
    const QModelIndex index = currentIndex();
    if (index.isValid() && isWritable())
        m_controller->removeNode(index.data(RelationRole::Path).toString());
}

void TRview::openContextMenu(const QPoint &position)
{
    if (!indexAt(position).isValid() || !isWritable())
        return;
    QMenu menu(tr("Tag Relationship Operations"), this);
    menu.addAction(QIcon(QStringLiteral(":/icons/delete.png")), tr("Delete Relationship Subtree"), this,
                   &TRview::deleteSelectedSubtree);
    menu.addActions(actions());
    menu.exec(viewport()->mapToGlobal(position));
}

void TRview::saveExpandedState()
{
    m_expandedPaths.clear();
    collectExpanded(QModelIndex(), m_expandedPaths);
    m_currentPath = currentIndex().data(RelationRole::Path).toString();
    m_scrollPosition = verticalScrollBar()->value();
}

void TRview::collectExpanded(const QModelIndex &parent, QHash<QString, bool> &state) const
{
    if (!model())
        return;
    for (int row = 0; row < model()->rowCount(parent); ++row) {
        const QModelIndex child = model()->index(row, 0, parent);
        if (model()->rowCount(child) == 0)
            continue;
        state.insert(child.data(RelationRole::Path).toString(), isExpanded(child));
        collectExpanded(child, state);
    }
}

void TRview::restoreExpandedState()
{
    const auto *trees = qobject_cast<const TRmodel *>(model());
    if (!trees)
        return;
    // With a layout pending the view only notes what is open; else it would lay out anew for each entry.
    scheduleDelayedItemsLayout();
    for (auto entry = m_expandedPaths.constBegin(); entry != m_expandedPaths.constEnd(); ++entry) {
        const QModelIndex index = trees->indexOfPath(entry.key());
        if (index.isValid())
            setExpanded(index, entry.value());
    }
    const QModelIndex current = trees->indexOfPath(m_currentPath);
    if (current.isValid())
        makeCurrent(current);
    executeDelayedItemsLayout();
    verticalScrollBar()->setValue(m_scrollPosition);
}

void TRview::startDrag(Qt::DropActions supportedActions)
{
    // The entry under the cursor becomes current in a drag, so what is dragged is noted before.
    for (const QModelIndex &index : selectedIndexes())
        m_draggedPaths.insert(index.data(RelationRole::TagId).toLongLong(),
                              index.data(RelationRole::Path).toString());
    if (QMimeData *data = m_draggedPaths.isEmpty() ? nullptr : model()->mimeData(selectedIndexes())) {
        // Without the picture of the row, which would cover the entry below it.
        auto *drag = new QDrag(this);
        drag->setMimeData(data);
        drag->exec(supportedActions, Qt::CopyAction);
    }
    m_draggedPaths.clear();
}

bool TRview::takes(const QDropEvent &event) const
{
    return isWritable() && event.mimeData()->hasFormat(Constants::tagMimeType);
}

void TRview::dragEnterEvent(QDragEnterEvent *event)
{
    BranchView::dragEnterEvent(event);
    if (!takes(*event)) {
        event->ignore();
        return;
    }
    keepCurrent();
    event->setDropAction(Qt::CopyAction);
    event->accept();
}

void TRview::dragMoveEvent(QDragMoveEvent *event)
{
    BranchView::dragMoveEvent(event);
    if (!takes(*event)) {
        event->ignore();
        return;
    }
    const QModelIndex target = indexAt(event->pos());
    makeCurrent(target);
    hoverOpener()->hover(target);
    event->setDropAction(Qt::CopyAction);
    event->accept();
}

void TRview::dropEvent(QDropEvent *event)
{
    hoverOpener()->stop();
    stopAutoScroll();
    setState(QAbstractItemView::NoState);
    const QVector<qint64> tagIds =
        isWritable() ? m_controller->knownTags(IdListMime::unpack(event->mimeData(), Constants::tagMimeType))
                     : QVector<qint64>();
    if (tagIds.isEmpty()) {
        event->ignore();
        return;
    }
    event->setDropAction(Qt::CopyAction);
    event->accept();

    const QPersistentModelIndex target = indexAt(event->pos());
    const QString parentPath = target.data(RelationRole::Path).toString();
    if (!(m_draggedPaths.isEmpty() ? addBelow(parentPath, tagIds) : addDragged(parentPath, tagIds)))
        emit tagRelationshipNotAllowed();
    if (target.isValid())
        expand(target);
}

bool TRview::addBelow(const QString &parentPath, const QVector<qint64> &tagIds)
{
    // Tags beside each other make no other illegal, so those before the first illegal one go in together.
    const auto refused = std::find_if(tagIds.cbegin(), tagIds.cend(), [&](qint64 tagId) {
        return !m_controller->isLegal(parentPath, {tagId});
    });
    const int legal = static_cast<int>(refused - tagIds.cbegin());
    if (legal > 0)
        m_controller->addChildren(parentPath, tagIds.mid(0, legal));
    return legal == tagIds.size();
}

bool TRview::addDragged(const QString &parentPath, const QVector<qint64> &tagIds)
{
    return std::all_of(tagIds.cbegin(), tagIds.cend(), [&](qint64 tagId) {
        return addWithSubtree(parentPath, tagId, m_draggedPaths.value(tagId));
    });
}

bool TRview::addWithSubtree(const QString &parentPath, qint64 tagId, const QString &sourcePath)
{
    if (!m_controller->isLegal(parentPath, {tagId}) || isBelowOwnTag(parentPath, sourcePath))
        return false;
    m_controller->addChildren(parentPath, {tagId});
    if (!sourcePath.isEmpty()) {
        const QString prefix = parentPath.isEmpty() ? QString() : parentPath + QLatin1Char('.');
        copySubtree(sourcePath, prefix + QString::number(tagId));
    }
    return true;
}

bool TRview::isBelowOwnTag(const QString &parentPath, const QString &sourcePath) const
{
    const auto *trees = qobject_cast<const TRmodel *>(model());
    const TRnode *source = trees->nodeOfPath(sourcePath);
    if (!source)
        return false;
    const QVector<qint64> below = source->descendantIds();
    const QStringList pieces = parentPath.split(QLatin1Char('.'));
    return std::any_of(pieces.cbegin(), pieces.cend(),
                       [&below](const QString &piece) { return below.contains(piece.toLongLong()); });
}

void TRview::copySubtree(const QString &sourcePath, const QString &targetPath)
{
    const auto *trees = qobject_cast<const TRmodel *>(model());
    QVector<QPair<QString, QString>> open{{sourcePath, targetPath}};
    while (!open.isEmpty()) {
        const auto [from, to] = open.takeLast();
        const TRnode *source = trees->nodeOfPath(from);
        // Where a level could not be written, those below it would hang in the air.
        if (!source || source->childrenCount() == 0 || !trees->nodeOfPath(to))
            continue;
        QVector<qint64> childIds;
        for (const TRnode *child : source->children()) {
            const QString piece = QLatin1Char('.') + QString::number(child->id());
            childIds.append(child->id());
            open.append({from + piece, to + piece});
        }
        m_controller->addChildren(to, childIds);
    }
}

void TRview::paintEvent(QPaintEvent *event)
{
    BranchView::paintEvent(event);
    if (m_controller)
        paintEmptyHint(this, tr("Drag tags here. A tag then stands for all tags below it."));
}

// The light one stands in the style sheet of the program.
void TRview::updateGround()
{
    const QString sheet =
        GreenGround::isDark() ? GreenGround::styleSheet(QStringLiteral("QTreeView#trView")) : QString();
    if (sheet != styleSheet())
        setStyleSheet(sheet);
}

void TRview::keyPressEvent(QKeyEvent *event)
{
    if (event->matches(QKeySequence::Delete)) {
        deleteSelectedNode();
        event->accept();
    } else {
        BranchView::keyPressEvent(event);
    }
}

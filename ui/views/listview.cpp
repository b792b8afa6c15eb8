#include "ui/views/listview.h"

#include "app/settings/windowsettings.h"
#include "ui/widgets/delegate.h"
#include "ui/widgets/emptyhint.h"
#include "ui/widgets/selectiondrag.h"

#include <QDragMoveEvent>
#include <QMimeData>
#include <QPointer>
#include <QScrollBar>

namespace {

constexpr int gap = 8;
// One step of the layout: small enough for the window to stay alive while a million items find their places.
constexpr int itemsAStep = 5000;

} // namespace

ListView::ListView(QWidget *parent) : QListView(parent)
{
    // This order: each of the three undoes what the later ones set.
    setViewMode(IconMode);
    setMovement(Static);
    setDragDropMode(DragDrop);
    viewport()->setAcceptDrops(true);
    setDragDropOverwriteMode(true);

    setResizeMode(Adjust);
    setLayoutMode(Batched);
    setBatchSize(itemsAStep);
    setUniformItemSizes(true);
    setWordWrap(false);
    setTextElideMode(Qt::ElideRight);
    setSelectionMode(ExtendedSelection);
    setSelectionBehavior(SelectRows);
    setVerticalScrollMode(ScrollPerPixel);
    resizeThumbnails(WindowSettings::largestThumbnail / 2);
}

void ListView::resizeThumbnails(int side)
{
    setIconSize({side, side});
    verticalScrollBar()->setSingleStep(side / 4);
    updateGrid();
}

void ListView::setThumbnailSide(int side)
{
    const QModelIndex middle = indexAt(viewport()->rect().center());
    resizeThumbnails(side);
    // The eye rests in the middle, so that what is there stays.
    if (middle.isValid())
        scrollTo(middle, PositionAtCenter);
}

void ListView::setEmptyText(const QString &text)
{
    m_emptyText = text;
    viewport()->update();
}

void ListView::keyboardSearch(const QString &typed)
{
    // Keys that an open editor refuses come back here and must not move to another file.
    if (isEditing() || !model())
        return;
    const QModelIndex current = currentIndex();
    const int row = m_nameSearch.find(model()->rowCount(), current.row(), typed);
    if (row >= 0)
        setCurrentIndex(model()->index(row, qMax(0, current.column())));
}

// The current index may stand in any column of the table that shares the selection; the base knows but one.
void ListView::scrollTo(const QModelIndex &index, ScrollHint hint)
{
    const QModelIndex item = index.siblingAtColumn(modelColumn());
    QListView::scrollTo(item, hint);
    m_awaited = visualRect(item).isEmpty() ? item : QModelIndex();
}

void ListView::doItemsLayout()
{
    m_awaited = QModelIndex();
    QListView::doItemsLayout();
}

void ListView::timerEvent(QTimerEvent *event)
{
    QListView::timerEvent(event);
    // One of its steps may have laid out the item to be shown.
    if (m_awaited.isValid() && !visualRect(m_awaited).isEmpty())
        scrollTo(m_awaited);
}

void ListView::startDrag(Qt::DropActions supportedActions)
{
    dragSelection(this, m_dragDataOf, supportedActions);
}

void ListView::dragMoveEvent(QDragMoveEvent *event)
{
    QListView::dragMoveEvent(event);
    // A file that is dropped where it came from would be moved about in the layout.
    if (event->source() == this)
        event->ignore();
}

void ListView::dropEvent(QDropEvent *event)
{
    if (event->source() == this)
        event->ignore();
    else
        QListView::dropEvent(event);
}

void ListView::closeEditor(QWidget *editor, QAbstractItemDelegate::EndEditHint hint)
{
    const QPointer<QWidget> closed = editor;
    const bool isLast = editor && window()->focusWidget() == editor;
    QListView::closeEditor(editor, hint);
    // The base passes over one whose row its text has hidden.
    if (closed && closed->isVisible())
        setState(NoState);
    // From an editor that goes the focus could get anywhere.
    if (isLast && !isEditing())
        setFocus();
}

void ListView::paintEvent(QPaintEvent *event)
{
    QListView::paintEvent(event);
    paintEmptyHint(this, m_emptyText);
}

void ListView::changeEvent(QEvent *event)
{
    QListView::changeEvent(event);
    if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange)
        updateGrid();
}

// The base asks for the place of every selected row, also while nobody sees the list.
QRegion ListView::visualRegionForSelection(const QItemSelection &selection) const
{
    constexpr int mostRows = 1000;
    if (!isVisible())
        return {};
    int rows = 0;
    for (const QItemSelectionRange &range : selection)
        rows += range.height();
    return rows > mostRows ? QRegion(viewport()->rect()) : QListView::visualRegionForSelection(selection);
}

void ListView::updateGrid()
{
    setGridSize(Delegate::thumbnailItemSize(viewOptions()) + QSize(gap, gap));
}

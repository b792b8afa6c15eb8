#include "ui/widgets/tableview.h"

#include "app/settings/constants.h"
#include "app/settings/showntext.h"
#include "ui/widgets/emptyhint.h"
#include "ui/widgets/selectiondrag.h"

#include <QAbstractItemDelegate>
#include <QDragMoveEvent>
#include <QHeaderView>
#include <QHelpEvent>
#include <QKeyEvent>
#include <QMimeData>
#include <QPointer>
#include <QToolTip>

namespace {
// Files of our own come by their ids, which count before their URLs.
bool bringsUrls(const QDropEvent *event)
{
    return event->mimeData()->hasUrls() && !event->mimeData()->hasFormat(Constants::fileMimeType);
}

// The base answers with the action that was proposed: after a move the other program deletes its files.
void copyUrls(QDropEvent *event)
{
    if (bringsUrls(event))
        event->setDropAction(Qt::CopyAction);
}
} // namespace

TableView::TableView(QWidget *parent) : QTableView(parent)
{
    setDragDropMode(DragDrop);
    setSelectionMode(ExtendedSelection);
    setSelectionBehavior(SelectRows);
    setShowGrid(false);
    setWordWrap(false);
    setTextElideMode(Qt::ElideRight);
    setHorizontalScrollMode(ScrollPerPixel);
    setTabKeyNavigation(false);

    // Rows of one height, which nobody measures.
    verticalHeader()->hide();
    verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    horizontalHeader()->setHighlightSections(false);
    horizontalHeader()->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
}

void TableView::setEmptyText(const QString &text)
{
    m_emptyText = text;
    viewport()->update();
}

void TableView::keyboardSearch(const QString &typed)
{
    // Keys that an open editor refuses come back here and must not move to another row.
    if (isEditing())
        return;
    if (!m_nameSearch.hasNames()) {
        QTableView::keyboardSearch(typed);
        return;
    }
    const QModelIndex current = currentIndex();
    const int row = m_nameSearch.find(model()->rowCount(), current.row(), typed);
    if (row >= 0)
        setCurrentIndex(model()->index(row, qMax(0, current.column())));
}

void TableView::scrollTo(const QModelIndex &index, ScrollHint hint)
{
    // Rows that have just come are out of the range of the scroll bar until they are laid out.
    executeDelayedItemsLayout();
    QTableView::scrollTo(index, hint);
}

// A header that knows the selection asks each time it is painted whether every row of a column is selected.
void TableView::setSelectionModel(QItemSelectionModel *selectionModel)
{
    QTableView::setSelectionModel(selectionModel);
    QItemSelectionModel *before = m_headerSelection;
    m_headerSelection = new QItemSelectionModel(selectionModel->model(), this);
    horizontalHeader()->setSelectionModel(m_headerSelection);
    delete before;
}

bool TableView::offerKey(QKeyEvent *event)
{
    event->ignore();
    emit keyPressed(event);
    return event->isAccepted();
}

void TableView::keyPressEvent(QKeyEvent *event)
{
    // Tab was offered when the focus was about to move.
    if (event->key() != Qt::Key_Tab && offerKey(event))
        return;
    event->accept();
    QTableView::keyPressEvent(event);
}

bool TableView::focusNextPrevChild(bool next)
{
    QKeyEvent tab(QEvent::KeyPress, Qt::Key_Tab, Qt::NoModifier);
    if (next && offerKey(&tab))
        return true;
    return QTableView::focusNextPrevChild(next);
}

void TableView::startDrag(Qt::DropActions supportedActions)
{
    const bool isCopy = !supportedActions.testFlag(Qt::MoveAction) || dragDropMode() == InternalMove;
    dragSelection(this, m_dragDataOf, supportedActions, isCopy ? Qt::CopyAction : Qt::IgnoreAction);
}

void TableView::dragEnterEvent(QDragEnterEvent *event)
{
    copyUrls(event);
    QTableView::dragEnterEvent(event);
    // A drag that is refused here never leaves, so nothing would take the marking back.
    if (event->isAccepted() && bringsUrls(event))
        beginUrlDrag();
}

void TableView::dragMoveEvent(QDragMoveEvent *event)
{
    if (m_isUrlDrag)
        setCurrentIndex(indexAt(event->pos()));
    copyUrls(event);
    QTableView::dragMoveEvent(event);
    copyUrls(event);
    if (event->source() == this)
        event->ignore();
}

void TableView::dragLeaveEvent(QDragLeaveEvent *event)
{
    endUrlDrag();
    QTableView::dragLeaveEvent(event);
}

void TableView::dropEvent(QDropEvent *event)
{
    endUrlDrag();
    if (event->source() == this) {
        event->ignore();
        return;
    }
    copyUrls(event);
    QTableView::dropEvent(event);
    copyUrls(event);
}

void TableView::beginUrlDrag()
{
    if (m_isUrlDrag || !selectionModel())
        return;
    m_isUrlDrag = true;
    m_palette = palette();
    m_current = currentIndex();
    m_selection = selectionModel()->selection();
    QPalette marking = m_palette;
    marking.setColor(QPalette::Highlight, QColor(204, 232, 255));
    marking.setColor(QPalette::HighlightedText, Qt::black);
    setPalette(marking);
}

void TableView::endUrlDrag()
{
    if (!m_isUrlDrag)
        return;
    m_isUrlDrag = false;
    setPalette(m_palette);
    selectionModel()->setCurrentIndex(m_current, QItemSelectionModel::NoUpdate);
    selectionModel()->select(m_selection, QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
    m_selection.clear();
}

void TableView::closeEditor(QWidget *editor, QAbstractItemDelegate::EndEditHint hint)
{
    // With a box in front that says why a text was refused, the base lets the focus go anywhere.
    const bool isLast = editor && window()->focusWidget() == editor;
    const QPointer<QWidget> closed = editor;
    QTableView::closeEditor(editor, hint);
    // The base passes over one whose row its text has hidden.
    if (closed && closed->isVisible())
        setState(NoState);
    if (isLast && !isEditing())
        setFocus();
}

bool TableView::viewportEvent(QEvent *event)
{
    if (event->type() == QEvent::ToolTip && showWholeText(*static_cast<QHelpEvent *>(event)))
        return true;
    return QTableView::viewportEvent(event);
}

/** As a tool tip, where a cell is too narrow for its text and the model has nothing else to say. */
bool TableView::showWholeText(const QHelpEvent &event)
{
    const QModelIndex index = indexAt(event.pos());
    const QString text = index.data().toString();
    if (text.isEmpty() || index.data(Qt::ToolTipRole).isValid())
        return false;
    const QRect cell = visualRect(index);
    if (itemDelegate(index)->sizeHint(viewOptions(), index).width() <= cell.width())
        return false;
    // What stands at the end of the cell may have had no room either.
    const QString spoken = index.data(Qt::AccessibleTextRole).toString();
    QToolTip::showText(event.globalPos(), ShownText::toolTip(spoken.isEmpty() ? text : spoken), viewport(),
                       cell);
    return true;
}

void TableView::paintEvent(QPaintEvent *event)
{
    QTableView::paintEvent(event);
    paintEmptyHint(this, m_emptyText);
}

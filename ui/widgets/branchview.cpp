#include "ui/widgets/branchview.h"

#include "ui/widgets/hoveropener.h"

#include <QHeaderView>
#include <QScrollBar>

BranchView::BranchView(QWidget *parent) : QTreeView(parent), m_hoverOpener(new HoverOpener(this))
{
    setHeaderHidden(true);
    setUniformRowHeights(true);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    setContextMenuPolicy(Qt::CustomContextMenu);
    // An internal-move view would refuse all that comes from outside.
    setDragDropMode(QAbstractItemView::DragDrop);
    setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
    header()->setSectionResizeMode(QHeaderView::Stretch);
    header()->setResizeContentsPrecision(-1); // all open rows
    m_fitTimer.setSingleShot(true);
    m_fitTimer.setInterval(40); // ms: measuring thousands of rows takes a moment
    connect(&m_fitTimer, &QTimer::timeout, this, &BranchView::fitColumn);
}

void BranchView::dataChanged(const QModelIndex &topLeft, const QModelIndex &bottomRight,
                             const QVector<int> &roles)
{
    QTreeView::dataChanged(topLeft, bottomRight, roles);
    fitColumnSoon();
}

void BranchView::updateGeometries()
{
    QTreeView::updateGeometries();
    // Rows have come or gone, unless it is the window alone that changes.
    if (!m_isResizing)
        fitColumnSoon();
}

void BranchView::fitColumnSoon()
{
    // Not put off anew by each of many changes.
    if (!m_fitTimer.isActive())
        m_fitTimer.start();
}

void BranchView::resizeEvent(QResizeEvent *event)
{
    m_isResizing = true;
    QTreeView::resizeEvent(event);
    m_isResizing = false;
}

void BranchView::fitColumn()
{
    // The column fills the view, as drops beside a name count for its row, and is never less than this.
    const int width = qMax(0, sizeHintForColumn(0));
    if (width == header()->minimumSectionSize())
        return;
    header()->setMinimumSectionSize(width);
    header()->setSectionResizeMode(QHeaderView::Stretch);
}

void BranchView::scrollTo(const QModelIndex &index, ScrollHint hint)
{
    // The toolkit goes back to the beginning of a column that is wider than the view.
    QScrollBar *bar = horizontalScrollBar();
    const int before = bar->value();
    QTreeView::scrollTo(index, hint);
    if (isRightToLeft() || !index.isValid())
        return;
    bar->setValue(before);
    const int left = visualRect(index).left() - indentation();
    const int right = visualRect(index).left() + sizeHintForIndex(index).width();
    if (left < 0)
        bar->setValue(before + left);
    else if (right > viewport()->width())
        bar->setValue(before + qMin(left, right - viewport()->width()));
}

void BranchView::makeCurrent(const QModelIndex &index)
{
    // Not by setCurrentIndex of the view, for which a held Ctrl or Shift means more than one row.
    if (!selectionModel() || (index == currentIndex() && selectionModel()->isSelected(index)))
        return;
    const bool scrolls = hasAutoScroll();
    setAutoScroll(false);
    selectionModel()->setCurrentIndex(index, QItemSelectionModel::ClearAndSelect);
    setAutoScroll(scrolls);
}

void BranchView::keepCurrent()
{
    // The focus alone makes a row current without selecting it.
    const QModelIndex current = currentIndex();
    m_currentBeforeDrag = selectionModel() && selectionModel()->isSelected(current) ? current : QModelIndex();
}

void BranchView::dragLeaveEvent(QDragLeaveEvent *event)
{
    QTreeView::dragLeaveEvent(event);
    m_hoverOpener->stop();
    restoreCurrent();
}

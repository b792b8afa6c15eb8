#include "ui/tagging/completionlist.h"

#include "ui/widgets/fontscale.h"

namespace {
constexpr int mostRows = 10;
constexpr int leastRows = 3;
constexpr int leastWidth = 220;
} // namespace

CompletionList::CompletionList(QWidget *line) : QListView(line->window()), m_line(line)
{
    setObjectName(QStringLiteral("completionList"));
    setAccessibleName(tr("Names"));
    // Keys go on to the line, which moves the current row; a click must not end the typing either.
    setFocusPolicy(Qt::NoFocus);
    setEditTriggers(NoEditTriggers);
    setUniformItemSizes(true);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setFrameShape(QFrame::Box);
    hide();
}

void CompletionList::showAt(const QWidget *edit)
{
    const int rows = model() ? model()->rowCount() : 0;
    if (rows == 0 || !m_line->isVisible()) {
        hide();
        return;
    }
    // A child of the window and no popup, which would take the keyboard from the line.
    QWidget *window = m_line->window();
    const QPoint below = m_line->mapTo(window, QPoint(0, m_line->height()));
    const QPoint above = m_line->mapTo(window, QPoint(0, 0));
    // The last row may be the new name with its icon, which is higher.
    const int row = qMax(1, qMax(sizeHintForRow(0), sizeHintForRow(rows - 1)));
    const int wanted = qMin(rows, mostRows) * row + 2 * frameWidth();
    // Above only where not even a few rows fit below: a list that jumps from side to side while one types is
    // hard to read.
    const bool isRoomBelow = window->height() - below.y() >= qMin(wanted, leastRows * row);
    const int height = qMin(wanted, isRoomBelow ? window->height() - below.y() : above.y());
    const int width = qMin(window->width(), qMax(edit->width(), FontScale::byFont(leastWidth, this)));
    const int left = qBound(0, edit->mapTo(window, QPoint(0, 0)).x(), window->width() - width);
    setGeometry(left, isRoomBelow ? below.y() : above.y() - height, width, height);
    raise();
    show();
}

void CompletionList::move(int rows)
{
    const int count = model()->rowCount();
    if (count == 0)
        return;
    const int row = currentIndex().isValid() ? currentIndex().row() : -1;
    // One row more goes round, a page ends at the last one.
    const bool isStep = qAbs(rows) == 1;
    moveTo(isStep ? (row + rows + count) % count : qBound(0, row + rows, count - 1));
}

void CompletionList::moveTo(int row)
{
    setCurrentIndex(model()->index(row, 0));
    scrollTo(currentIndex());
}

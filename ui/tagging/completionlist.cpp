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
    QWidget *window = m_line->window();
    const QPoint below = m_line->mapTo(window, QPoint(0, m_line->height()));
    const QPoint above = m_line->mapTo(window, QPoint(0, 0));
    const int row = qMax(1, qMax(sizeHintForRow(0), sizeHintForRow(rows - 1)));
    const int wanted = qMin(rows, mostRows) * row + 2 * frameWidth();
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
    const bool isStep = qAbs(rows) == 1;
    moveTo(isStep ? (row + rows + count) % count : qBound(0, row + rows, count - 1));
}

void CompletionList::moveTo(int row)
{
    setCurrentIndex(model()->index(row, 0));
    scrollTo(currentIndex());
}

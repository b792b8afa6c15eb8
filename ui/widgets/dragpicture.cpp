#include "ui/widgets/dragpicture.h"

#include "app/settings/showntext.h"

#include <QAbstractItemView>
#include <QDrag>
#include <QItemSelectionModel>
#include <QPainter>

namespace {
constexpr int mostNameWidth = 220;
constexpr int padding = 6;
constexpr QPoint besidePointer(-14, -8); // the target stays in sight

QString caption(const QAbstractItemView *view)
{
    const QItemSelectionModel *model = view->selectionModel();
    const QItemSelection selection = model->selection();
    int count = 0;
    for (const QItemSelectionRange &range : selection)
        count += range.height();
    QModelIndex shown = view->currentIndex();
    if (!model->isSelected(shown) && !selection.isEmpty())
        shown = selection.first().topLeft();
    // The text to edit is the whole one.
    const QString name = shown.siblingAtColumn(0).data(Qt::EditRole).toString();
    const QString text = view->fontMetrics().elidedText(ShownText::cut(name), Qt::ElideMiddle, mostNameWidth);
    return count > 1 ? text + QStringLiteral("  +") + QString::number(count - 1) : text;
}
} // namespace

void setDragPicture(QDrag *drag, const QAbstractItemView *view)
{
    const QString text = caption(view);
    const QFontMetrics metrics = view->fontMetrics();
    const QSize size(metrics.horizontalAdvance(text) + 2 * padding, metrics.height() + padding);
    QPixmap picture(size * view->devicePixelRatioF());
    picture.setDevicePixelRatio(view->devicePixelRatioF());
    picture.fill(Qt::transparent);

    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setFont(view->font());
    painter.setPen(Qt::NoPen);
    painter.setBrush(view->palette().color(QPalette::Active, QPalette::Highlight));
    painter.drawRoundedRect(QRect(QPoint(), size), padding, padding);
    painter.setPen(view->palette().color(QPalette::Active, QPalette::HighlightedText));
    painter.drawText(QRect(QPoint(), size), Qt::AlignCenter | Qt::TextSingleLine, text);
    painter.end();

    drag->setPixmap(picture);
    drag->setHotSpot(besidePointer);
}

#include "ui/widgets/hitmark.h"

#include <QApplication>
#include <QPainter>
#include <QStringList>
#include <QStyleOptionViewItem>
#include <QTextLayout>

namespace {

// Legible on light, dark and selected grounds alike, as the text on it is black.
const QColor ground(0xff, 0xd9, 0x66);
constexpr QChar dots(0x2026);

/** The room for text as the styles of the toolkit lay it out. */
QRect textRect(const QStyleOptionViewItem &option, const QStyle &style)
{
    const int margin = style.pixelMetric(QStyle::PM_FocusFrameHMargin, nullptr, option.widget) + 1;
    return style.subElementRect(QStyle::SE_ItemViewItemText, &option, option.widget)
        .adjusted(margin, 0, -margin, 0);
}

QString elided(const QStyleOptionViewItem &option, int width)
{
    QStringList lines = option.text.split(QChar::LineSeparator);
    for (QString &line : lines)
        line = option.fontMetrics.elidedText(line, option.textElideMode, width);
    return lines.join(QChar(QChar::LineSeparator));
}

void layOut(QTextLayout &layout, const QStyleOptionViewItem &option, int width)
{
    QTextOption textOption(QStyle::visualAlignment(option.direction, option.displayAlignment));
    textOption.setTextDirection(option.direction);
    textOption.setWrapMode(QTextOption::ManualWrap);
    layout.setTextOption(textOption);
    layout.beginLayout();
    qreal top = 0;
    for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
        line.setLineWidth(width);
        line.setPosition({0, top});
        top += line.height();
    }
    layout.endLayout();
}

} // namespace

namespace HitMark {

void paint(QPainter *painter, const QStyleOptionViewItem &option, const QString &hit)
{
    const QStyle &style = option.widget ? *option.widget->style() : *QApplication::style();
    const QRect room = textRect(option, style);
    const QString shown = elided(option, room.width());
    int first = shown.indexOf(hit, 0, Qt::CaseInsensitive);
    const bool isShown = first >= 0;
    if (!isShown)
        first = shown.indexOf(dots);
    if (first < 0)
        return;
    QTextLayout layout(shown, option.font);
    layOut(layout, option, room.width());
    const QRect place = QStyle::alignedRect(Qt::LayoutDirectionAuto, option.displayAlignment,
                                            layout.boundingRect().size().toSize(), room);
    QTextLayout::FormatRange range;
    range.start = first;
    range.length = isShown ? hit.size() : 1;
    range.format.setForeground(Qt::black);
    range.format.setBackground(ground);
    // The style has painted the text: of this layout only the hit is let through.
    const QTextLine line = layout.lineForTextPosition(first);
    const qreal from = line.cursorToX(first);
    const qreal to = line.cursorToX(first + range.length);
    const QPointF corner(room.x(), place.top());
    painter->save();
    painter->setClipRect(
        QRectF(QPointF(qMin(from, to), line.y()) + corner, QSizeF(qAbs(to - from), line.height())),
        Qt::IntersectClip);
    layout.draw(painter, corner, {range});
    painter->restore();
}

} // namespace HitMark

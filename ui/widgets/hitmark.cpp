#include "ui/widgets/hitmark.h"

#include "ui/widgets/itemtext.h"

#include <QApplication>
#include <QPainter>
#include <QStringList>
#include <QStyleOptionViewItem>
#include <QTextLayout>
#include <QVector>

namespace {

// Legible on light, dark and selected grounds alike, as the text on it is black.
const QColor ground(0xff, 0xd9, 0x66);
constexpr QChar dots(0x2026);

/** The room for text as the styles of the toolkit lay it out. */
QRect textRect(const QStyleOptionViewItem &option, const QStyle &style)
{
    const int margin = ItemText::margin(option);
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

/** Where the hit stands in the shown text, which line ends may part; else the dots. Null for neither. */
QTextLayout::FormatRange rangeOf(const QString &hit, const QString &shown)
{
    QString plain;
    QVector<int> places;
    for (int i = 0; i < shown.size(); ++i) {
        if (shown.at(i) == QChar(QChar::LineSeparator))
            continue;
        plain.append(shown.at(i));
        places.append(i);
    }
    int first = plain.indexOf(hit, 0, Qt::CaseInsensitive);
    const int length = first >= 0 ? hit.size() : 1;
    if (first < 0)
        first = plain.indexOf(dots);
    QTextLayout::FormatRange range{0, 0, {}};
    if (first >= 0) {
        range.start = places.at(first);
        range.length = places.at(first + length - 1) + 1 - range.start;
    }
    return range;
}

QRegion regionOf(const QTextLayout &layout, const QTextLayout::FormatRange &range, const QPointF &corner)
{
    QRegion region;
    for (int i = 0; i < layout.lineCount(); ++i) {
        const QTextLine line = layout.lineAt(i);
        const int first = qMax(range.start, line.textStart());
        const int last = qMin(range.start + range.length, line.textStart() + line.textLength());
        if (first >= last)
            continue;
        const qreal from = line.cursorToX(first);
        const qreal to = line.cursorToX(last);
        const QRectF part(qMin(from, to), line.y(), qAbs(to - from), line.height());
        region += part.translated(corner).toAlignedRect();
    }
    return region;
}

} // namespace

namespace HitMark {

void paint(QPainter *painter, const QStyleOptionViewItem &option, const QString &hit)
{
    const QStyle &style = option.widget ? *option.widget->style() : *QApplication::style();
    const QRect room = textRect(option, style);
    const QString shown = elided(option, room.width());
    QTextLayout::FormatRange range = rangeOf(hit, shown);
    if (range.length == 0)
        return;
    range.format.setForeground(Qt::black);
    range.format.setBackground(ground);
    QTextLayout layout(shown, option.font);
    layOut(layout, option, room.width());
    const QRect place = QStyle::alignedRect(Qt::LayoutDirectionAuto, option.displayAlignment,
                                            layout.boundingRect().size().toSize(), room);
    const QPointF corner(room.x(), place.top());
    painter->save();
    // The style has painted the text: of this layout only the hit is let through.
    painter->setClipRegion(regionOf(layout, range, corner), Qt::IntersectClip);
    layout.draw(painter, corner, {range});
    painter->restore();
}

} // namespace HitMark

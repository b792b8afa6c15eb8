#include "ui/widgets/rowcount.h"

#include "ui/widgets/itemtext.h"

#include <QApplication>
#include <QPainter>
#include <QStyleOptionViewItem>

namespace {

constexpr double opacity = 0.55;
constexpr int leastLetters = 5;

QPalette::ColorGroup colorGroup(const QStyleOptionViewItem &option)
{
    if (!option.state.testFlag(QStyle::State_Enabled))
        return QPalette::Disabled;
    return option.state.testFlag(QStyle::State_Active) ? QPalette::Active : QPalette::Inactive;
}

} // namespace

int RowCount::width(const QStyleOptionViewItem &option, const QString &count)
{
    const int gap = 2 * option.fontMetrics.averageCharWidth();
    return gap + option.fontMetrics.horizontalAdvance(count) + ItemText::margin(option);
}

int RowCount::textWidth(const QStyleOptionViewItem &option, const QString &count)
{
    const QStyle &style = option.widget ? *option.widget->style() : *QApplication::style();
    const QRect text = style.subElementRect(QStyle::SE_ItemViewItemText, &option, option.widget);
    const int room = option.direction == Qt::RightToLeft ? text.right() - option.rect.left() + 1
                                                         : option.rect.right() - text.left() + 1;
    const int left = room - ItemText::margin(option) - width(option, count);
    const int whole = option.fontMetrics.horizontalAdvance(option.text);
    return left < qMin(whole, leastLetters * option.fontMetrics.averageCharWidth()) ? -1 : left;
}

void RowCount::paint(QPainter *painter, const QStyleOptionViewItem &option, const QRect &row,
                     const QString &count)
{
    const bool isOnSelection = option.state.testFlag(QStyle::State_Selected);
    QColor color =
        option.palette.color(colorGroup(option), isOnSelection ? QPalette::HighlightedText : QPalette::Text);
    color.setAlphaF(color.alphaF() * opacity);
    const int margin = ItemText::margin(option);
    painter->save();
    painter->setFont(option.font);
    painter->setPen(color);
    painter->drawText(row.adjusted(margin, 0, -margin, 0),
                      int(QStyle::visualAlignment(option.direction, Qt::AlignRight | Qt::AlignVCenter)) |
                          Qt::TextSingleLine,
                      count);
    painter->restore();
}

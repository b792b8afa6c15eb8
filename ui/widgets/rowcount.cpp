#include "ui/widgets/rowcount.h"

#include "models/counts/filecount.h"
#include "ui/widgets/itemtext.h"

#include <QApplication>
#include <QPainter>
#include <QStyleOptionViewItem>

namespace {

constexpr double opacity = 0.55;
constexpr double outdatedOpacity = 0.3;

QPalette::ColorGroup colorGroup(const QStyleOptionViewItem &option)
{
    if (!option.state.testFlag(QStyle::State_Enabled))
        return QPalette::Disabled;
    return option.state.testFlag(QStyle::State_Active) ? QPalette::Active : QPalette::Inactive;
}

} // namespace

int RowCount::width(const QStyleOptionViewItem &option, const FileCount &count)
{
    const int gap = 2 * option.fontMetrics.averageCharWidth();
    return gap + option.fontMetrics.horizontalAdvance(count.text(option.locale)) + ItemText::margin(option);
}

int RowCount::textWidth(const QStyleOptionViewItem &option, const QRect &row, const FileCount &count)
{
    const QStyle &style = option.widget ? *option.widget->style() : *QApplication::style();
    const QRect text = style.subElementRect(QStyle::SE_ItemViewItemText, &option, option.widget);
    const int room =
        option.direction == Qt::RightToLeft ? text.right() - row.left() + 1 : row.right() - text.left() + 1;
    return room - ItemText::margin(option) - width(option, count);
}

void RowCount::paint(QPainter *painter, const QStyleOptionViewItem &option, const QRect &row,
                     const FileCount &count)
{
    const bool isOnSelection = option.state.testFlag(QStyle::State_Selected);
    QColor color =
        option.palette.color(colorGroup(option), isOnSelection ? QPalette::HighlightedText : QPalette::Text);
    color.setAlphaF(color.alphaF() * (count.isOutdated() ? outdatedOpacity : opacity));
    const int margin = ItemText::margin(option);
    painter->save();
    painter->setFont(option.font);
    painter->setPen(color);
    painter->drawText(row.adjusted(margin, 0, -margin, 0),
                      int(QStyle::visualAlignment(option.direction, Qt::AlignRight | Qt::AlignVCenter)) |
                          Qt::TextSingleLine,
                      count.text(option.locale));
    painter->restore();
}

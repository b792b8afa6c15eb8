#include "ui/widgets/rowcount.h"

#include "models/counts/filecount.h"
#include "ui/widgets/itemtext.h"

#include <QApplication>
#include <QPainter>
#include <QStyleOptionViewItem>

namespace {

constexpr double opacity = 0.55;
constexpr double opacityOnSelection = 0.75;

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
    const QString text = count.text(option.locale);
    const bool isOnSelection = option.state.testFlag(QStyle::State_Selected);
    QColor color =
        option.palette.color(colorGroup(option), isOnSelection ? QPalette::HighlightedText : QPalette::Text);
    const double strength = isOnSelection ? opacityOnSelection : opacity;
    color.setAlphaF(color.alphaF() * (count.isOutdated() ? strength / 2 : strength));
    const int margin = ItemText::margin(option);
    const Qt::Alignment edge = QStyle::visualAlignment(option.direction, Qt::AlignRight | Qt::AlignVCenter);
    painter->save();
    // The words of a language that runs the other way than the window keep their order.
    painter->setLayoutDirection(text.isRightToLeft() ? Qt::RightToLeft : Qt::LeftToRight);
    painter->setFont(option.font);
    painter->setPen(color);
    painter->drawText(row.adjusted(margin, 0, -margin, 0), int(edge | Qt::AlignAbsolute) | Qt::TextSingleLine,
                      text);
    painter->restore();
}

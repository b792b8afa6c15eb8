#include "ui/widgets/itemtext.h"

#include <QApplication>
#include <QStyleOptionViewItem>

int ItemText::margin(const QStyleOptionViewItem &option)
{
    // As in QCommonStyle, which tells nobody.
    const QStyle &style = option.widget ? *option.widget->style() : *QApplication::style();
    return style.pixelMetric(QStyle::PM_FocusFrameHMargin, nullptr, option.widget) + 1;
}

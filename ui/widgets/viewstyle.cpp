#include "ui/widgets/viewstyle.h"

#include <QStyleOption>
#include <QWidget>

void ViewStyle::drawPrimitive(PrimitiveElement element, const QStyleOption *option, QPainter *painter,
                              const QWidget *widget) const
{
    const bool isIndicator = element == QStyle::PE_IndicatorItemViewItemDrop && option && widget &&
                             option->rect.height() != 0 && option->rect.width() != 0;
    if (!isIndicator) {
        QProxyStyle::drawPrimitive(element, option, painter, widget);
        return;
    }
    QStyleOption line(*option);
    if (!widget->property("is_above").toBool())
        line.rect.moveTop(line.rect.bottom());
    line.rect.setHeight(0);
    QProxyStyle::drawPrimitive(element, &line, painter, widget);
}

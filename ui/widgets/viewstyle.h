#pragma once

#include <QProxyStyle>

/** Draws the drop indicator of a tree as one line above or below a row, as the view's "is_above" says. */
class ViewStyle : public QProxyStyle
{
    Q_OBJECT

public:
    using QProxyStyle::QProxyStyle;

    void drawPrimitive(PrimitiveElement element, const QStyleOption *option, QPainter *painter,
                       const QWidget *widget = nullptr) const override;
};

#include "ui/widgets/fontscale.h"

#include <QFontMetrics>
#include <QWidget>

namespace {
// What the usual fonts have at nine points; not all of them are equally high.
constexpr int usualHeight = 17;

int heightFor(const QWidget *widget)
{
    return qMax(usualHeight, widget->fontMetrics().height());
}
} // namespace

int FontScale::byFont(int pixels, const QWidget *widget)
{
    return pixels * heightFor(widget) / usualHeight;
}

QSize FontScale::byFont(const QSize &pixels, const QWidget *widget)
{
    return pixels * heightFor(widget) / usualHeight;
}

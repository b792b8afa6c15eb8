#include "ui/widgets/firstsize.h"

#include "ui/widgets/fontscale.h"

#include <QScreen>
#include <QWidget>

namespace {
QSize mostOf(const QWidget *window)
{
    return window->screen()->availableSize() * 9 / 10;
}
} // namespace

void FirstSize::byContents(QWidget *window)
{
    window->ensurePolished();
    window->resize(window->sizeHint().boundedTo(mostOf(window)));
}

void FirstSize::byFont(QWidget *window, const QSize &pixels)
{
    window->resize(FontScale::byFont(pixels, window).boundedTo(mostOf(window)));
}

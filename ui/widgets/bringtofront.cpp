#include "ui/widgets/bringtofront.h"

#include <QGuiApplication>
#include <QWidget>

void bringToFront(QWidget *window)
{
    window->setWindowState(window->windowState() & ~Qt::WindowMinimized);
    // On Wayland a program can raise no window, but one that is shown anew comes in front.
    if (QGuiApplication::platformName().startsWith(QLatin1String("wayland")) && !window->isActiveWindow()) {
        window->hide();
        window->show();
        return;
    }
    window->raise();
    window->activateWindow();
}

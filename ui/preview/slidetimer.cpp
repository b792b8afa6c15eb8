#include "ui/preview/slidetimer.h"

#include "app/settings/previewsettings.h"

#include <QApplication>

SlideTimer::SlideTimer(QObject *parent) : QObject(parent)
{
    connect(&m_timer, &QTimer::timeout, this, [this] {
        // Pictures stand still under a box or a menu, whose loop may be in the middle of a change.
        if (!QApplication::activeModalWidget() && !QApplication::activePopupWidget())
            emit due();
    });
}

void SlideTimer::start()
{
    m_timer.start(PreviewSettings::slideshowIncrementTime() * 1000);
}

void SlideTimer::restart()
{
    if (isActive())
        start();
}

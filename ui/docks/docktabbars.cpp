#include "ui/docks/docktabbars.h"

#include <QChildEvent>
#include <QMainWindow>
#include <QTabBar>
#include <QTimer>

DockTabBars::DockTabBars(QMainWindow *window) : QObject(window)
{
    window->installEventFilter(this);
}

bool DockTabBars::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::ChildPolished) {
        // The toolkit makes these bars by itself and tells nobody; polished, they have their type.
        if (auto *tabs = qobject_cast<QTabBar *>(static_cast<QChildEvent *>(event)->child()))
            tabs->installEventFilter(this);
    } else if (event->type() == QEvent::Show) {
        auto *tabs = qobject_cast<QTabBar *>(watched);
        // A bar that comes into use is shown before it gets its tabs.
        if (tabs && tabs->count() == 0)
            QTimer::singleShot(0, tabs, [tabs] { tabs->setVisible(tabs->count() > 0); });
    }
    return QObject::eventFilter(watched, event);
}

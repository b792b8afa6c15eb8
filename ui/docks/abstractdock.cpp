#include "ui/docks/abstractdock.h"

AbstractDock::AbstractDock(const QString &title, QWidget *parent) : QDockWidget(title, parent)
{
    setFeatures(DockWidgetClosable | DockWidgetMovable | DockWidgetFloatable);
}

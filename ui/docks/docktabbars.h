#pragma once

#include <QObject>

class QMainWindow;

/**
 * Hides the tab bars of stacks of docks that were taken apart. The main window keeps and shows them, empty,
 * as lines across the docks. Owned by the window.
 */
class DockTabBars : public QObject
{
    Q_OBJECT

public:
    explicit DockTabBars(QMainWindow *window);

    bool eventFilter(QObject *watched, QEvent *event) override;
};

#pragma once

#include <QDockWidget>

/** The base of all docks: a titled dock that can be moved, floated and closed. */
class AbstractDock : public QDockWidget
{
    Q_OBJECT

public:
    explicit AbstractDock(const QString &title, QWidget *parent = nullptr);
};

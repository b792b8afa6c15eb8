#pragma once

#include <QObject>

/**
 * Keeps drags of ids away that come from another running Vorna: its ids name other records, or none, in the
 * database that is open here. Install it on the application. GUI thread.
 */
class ForeignDragFilter : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

    bool eventFilter(QObject *watched, QEvent *event) override;
};

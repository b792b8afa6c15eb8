#pragma once

#include <QObject>

/**
 * Takes the ids out of drags that come from another running Vorna, where they name other records, or none:
 * what is left are the URLs of files, as from a file manager. Links to copies of internal files are refused.
 * Install it on the application. GUI thread.
 */
class ForeignDragFilter : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

    bool eventFilter(QObject *watched, QEvent *event) override;
};

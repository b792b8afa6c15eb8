#pragma once

#include "ui/docks/abstractdock.h"

#include <QVector>

class ExternalFileView;
class MainViewController;

/**
 * The computer's files beside the database: they are dragged from here onto the tree, tags and files, and
 * files of the database onto the folders here.
 */
class ExternalFilesDock : public AbstractDock
{
    Q_OBJECT

public:
    explicit ExternalFilesDock(QWidget *parent = nullptr);

    /** Null while no database is open: then there is nothing to add files to, and the tree is disabled. */
    void setController(MainViewController *controller);

signals:
    /** Files of the database were dropped on a folder. */
    void filesDropped(QString folder, QVector<qint64> fileIds);

private:
    ExternalFileView *m_view;
};

#pragma once

#include "ui/docks/abstractdock.h"

class ExternalFileView;
class MainViewController;

/** The computer's files beside the database: they are dragged from here onto the tree, tags and files. */
class ExternalFilesDock : public AbstractDock
{
    Q_OBJECT

public:
    explicit ExternalFilesDock(QWidget *parent = nullptr);

    /** Null while no database is open: then there is nothing to add files to, and the tree is disabled. */
    void setController(MainViewController *controller);

private:
    ExternalFileView *m_view;
};

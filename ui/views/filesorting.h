#pragma once

#include <QObject>
#include <QPointer>

class CollectionSettings;
class FileViews;
class MainUi;
class MainViewController;
class QAction;
class QMenu;

/**
 * "Sort By" of the View menu, for both views of the files, and what each database was sorted by last. Belongs
 * to the view of the files; views and controller are borrowed.
 */
class FileSorting : public QObject
{
    Q_OBJECT

public:
    FileSorting(FileViews *views, QObject *parent);

    void takePlace(MainUi &ui);
    /** After the views have got the controller's files: sorts them as the last time, else by name. */
    void setController(MainViewController *controller);

private:
    void showState();
    void remember(int column, Qt::SortOrder order);

    FileViews *m_views;
    QPointer<CollectionSettings> m_settings;
    QPointer<QMenu> m_menu;
    QVector<QAction *> m_columns; // each bears its column
    QAction *m_ascending = nullptr;
    QAction *m_descending = nullptr;
};

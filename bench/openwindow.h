#pragma once

#include "app/window/mainwindow.h"
#include "bench/plaindatabase.h"
#include "bench/settling.h"

#include <QString>
#include <QVector>

#include <functional>
#include <memory>

class BrowsTreeController;
class DatabaseManger;
class GroupsController;
class ListView;
class MainFilesView;
class MainViewController;
class QLineEdit;
class QTemporaryDir;
class TableView;
class TagGroupBar;
class TagsController;
class TagsTableDock;
class TBtreeView;

/**
 * The program with a copy of the sample library open, the handles to its parts, and a second copy as a plain
 * database for the references.
 */
class OpenWindow
{
public:
    OpenWindow(const QString &library, const QTemporaryDir &folder);

    /** The text field of a tool bar, or null. */
    QLineEdit *edit(const char *bar);
    void settle(const std::function<void()> &action) { measure(action); }
    Settling::Cost measure(const std::function<void()> &action);

    QModelIndex node(qint64 id);
    void clickNode(const QModelIndex &node);
    void showNothing();
    void showAll();
    void sort(int column, Qt::SortOrder order = Qt::AscendingOrder);
    void unsort();
    void select(int first, int count);
    QVector<qint64> idsOfRows(int first, int count) const;
    /** What opening it took. */
    const Settling::Cost &opening() const { return m_opening; }
    /** Reads all records anew. */
    Settling::Cost reload();
    /** After it there is nothing to be done any more. */
    Settling::Cost close();
    /** Runs a statement on the plain database. */
    void runPlain(const QString &statement);

    MainViewController *files;
    TagsController *tags;
    GroupsController *groups;
    BrowsTreeController *tree;
    DatabaseManger *manager;
    MainFilesView *mainView;
    TableView *table;
    ListView *list;
    TagsTableDock *tagsDock;
    TableView *tagTable;
    TagGroupBar *tagTabs;
    TBtreeView *nodes;

private:
    QString m_plainPath;
    std::unique_ptr<PlainDatabase> m_plain;
    MainWindow m_window;
    Settling::Cost m_opening;
};

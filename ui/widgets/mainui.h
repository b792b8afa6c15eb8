#pragma once

#include <QCoreApplication>
#include <QList>

class QAction;
class QLineEdit;
class QMainWindow;
class QMenu;
class QStatusBar;
class QToolBar;

/**
 * The menus, tool bars and shared controls of the main window while it is being set up: the window makes one
 * on the stack, and the main view and the docks take their places in it. All it points to belongs to the
 * window.
 */
class MainUi
{
    Q_DECLARE_TR_FUNCTIONS(MainUi)

public:
    /** Builds the menus in the menu bar's order and adds the five tool bars, still empty. */
    explicit MainUi(QMainWindow *window);

    QList<QToolBar *> toolBars() const;
    /** Lets the keyboard reach the buttons of the bars and names those that show a picture only. Call it
     * last. */
    void makeBarsReachable() const;

    QMenu *databaseMenu;
    /** "Export"; the view that had the focus last fills it, the window gives it its place. */
    QMenu *exportMenu;
    QMenu *fileMenu;
    QMenu *tagMenu;
    QMenu *nodeMenu;
    QMenu *viewMenu;
    QMenu *editMenu;
    QMenu *helpMenu;

    QToolBar *tagFilterBar;
    QToolBar *tagToolsBar;
    QToolBar *fileToolsBar;
    QToolBar *viewModeBar;
    QToolBar *searchFilesBar;

    /** Its messages are the window's; controls go to its right end. */
    QStatusBar *statusBar;

    /** "Edit Mode", checkable; stands in the tag tools, heeded by the main view and the tags dock. */
    QAction *editMode;
    /** "Link Tags to Files"; its data holds the ids of the tags selected in the tags dock. */
    QAction *linkTagsToFiles;
    /** Searches file names, descriptions and id codes; its place is the search bar. */
    QLineEdit *searchEdit;
    /** Narrows the tag table; its place is the tag filter bar. */
    QLineEdit *tagFilterEdit;
};

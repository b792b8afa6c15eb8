#include "ui/widgets/mainui.h"

#include <QAction>
#include <QLineEdit>
#include <QMainWindow>
#include <QMenuBar>
#include <QShortcut>
#include <QStatusBar>
#include <QToolBar>
#include <QToolButton>

namespace {

QToolBar *addBar(QMainWindow *window, const QString &title, const char *objectName)
{
    QToolBar *bar = window->addToolBar(title);
    bar->setObjectName(QLatin1String(objectName));
    bar->setIconSize({24, 24});
    return bar;
}

QLineEdit *makeEdit(QMainWindow *window, const QString &placeholder, const QString &toolTip)
{
    auto *edit = new QLineEdit(window);
    edit->setPlaceholderText(placeholder);
    edit->setToolTip(toolTip);
    edit->setAccessibleName(toolTip);
    edit->setClearButtonEnabled(true);
    return edit;
}

QAction *makeEditMode(QMainWindow *window)
{
    auto *action = new QAction(QIcon(QStringLiteral(":/icons/edit.png")), MainUi::tr("Edit Mode"), window);
    action->setObjectName(QStringLiteral("editModeAction"));
    action->setCheckable(true);
    action->setShortcut(QKeySequence(QStringLiteral("Ctrl+E")));
    action->setAutoRepeat(false);
    return action;
}

} // namespace

MainUi::MainUi(QMainWindow *window)
{
    statusBar = window->statusBar();
    QMenuBar *bar = window->menuBar();
    databaseMenu = bar->addMenu(tr("&Database"));
    exportMenu = new QMenu(tr("Export"), databaseMenu);
    exportMenu->setObjectName(QStringLiteral("exportMenu"));
    fileMenu = bar->addMenu(tr("File"));
    tagMenu = bar->addMenu(tr("Tag"));
    nodeMenu = bar->addMenu(tr("Node"));
    viewMenu = bar->addMenu(tr("View"));
    editMenu = bar->addMenu(tr("Edit"));
    helpMenu = bar->addMenu(tr("Help"));

    // Not all desktops give this key to the menus by themselves.
    auto *toMenus = new QShortcut(QKeySequence(Qt::Key_F10), window);
    // The focus stays where it is: the menu gives the keys back to it.
    QObject::connect(toMenus, &QShortcut::activated, bar,
                     [bar] { bar->setActiveAction(bar->actions().constFirst()); });

    tagFilterBar = addBar(window, tr("Tag Filter"), "TagFilterBar");
    tagToolsBar = addBar(window, tr("Tag tools"), "TagToolsBar");
    fileToolsBar = addBar(window, tr("File tools"), "FileToolsBar");
    viewModeBar = addBar(window, tr("View-mode"), "ViewModeBar");
    searchFilesBar = addBar(window, tr("Search Files"), "SearchFilesBar");
    for (QToolBar *toolBar : {tagToolsBar, fileToolsBar, viewModeBar})
        toolBar->setToolButtonStyle(Qt::ToolButtonIconOnly);

    editMode = makeEditMode(window);
    linkTagsToFiles = new QAction(tr("Link Tags to Files"), window);
    linkTagsToFiles->setObjectName(QStringLiteral("linkTagsToFilesAction"));

    searchEdit = makeEdit(window, tr("File name, description or ID code"),
                          tr("Search Files - Name, Description, ID Code"));
    searchEdit->setObjectName(QStringLiteral("searchEdit"));
    tagFilterEdit = makeEdit(window, tr("Tag Filter"), tr("Tag Filter"));
    tagFilterEdit->setObjectName(QStringLiteral("tagFilterEdit"));
}

QList<QToolBar *> MainUi::toolBars() const
{
    return {tagFilterBar, tagToolsBar, fileToolsBar, viewModeBar, searchFilesBar};
}

void MainUi::makeBarsReachable() const
{
    for (const QToolBar *bar : toolBars()) {
        for (QAction *action : bar->actions()) {
            auto *button = qobject_cast<QToolButton *>(bar->widgetForAction(action));
            if (button) {
                // Bars keep their buttons out of the chain of Tab, which leaves commands to the mouse alone.
                button->setFocusPolicy(Qt::TabFocus);
                button->setAccessibleName(action->toolTip());
            }
            if (action->shortcut().isEmpty())
                continue;
            // A short cut does not reach a bar that is hidden.
            bar->window()->addAction(action);
            action->setToolTip(
                tr("%1 (%2)").arg(action->toolTip(), action->shortcut().toString(QKeySequence::NativeText)));
        }
    }
}

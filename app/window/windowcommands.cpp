#include "app/window/windowcommands.h"

#include "app/settings/addingsettings.h"
#include "app/settings/constants.h"
#include "core/controllers/collection.h"
#include "ui/widgets/mainui.h"

#include <QAction>
#include <QActionGroup>
#include <QMenu>
#include <QToolBar>

WindowCommands::WindowCommands(QObject *parent) : QObject(parent)
{
    add(ConnectAction, tr("Connect"), ":/icons/folder.png");
    add(DisconnectAction, tr("Disconnect"));
    add(OpenAction, tr("Open"), ":/icons/folder.png");
    add(NewDatabaseAction, tr("New Local Database"), ":/icons/new.png");
    add(ImportDatabaseAction, tr("Database"));
    add(ImportShellAction, tr("Shell"));
    add(ExitAction, tr("Exit"), ":/icons/close.png");
    add(DatabaseInfoAction, tr("Database Info"));
    add(ShowAllDocksAction, tr("Show All Docks"));
    add(SelectBrowsingTreeAction, tr("Select Browsing Tree"));
    add(PreferencesAction, tr("Preferences"));
    add(TagGroupsAction, tr("Tag Groups"));
    add(BrowsingTreeListAction, tr("Browsing Tree List"));
    add(RemakeThumbnailsAction, tr("Remake thumbnails"));
    add(QuickStartAction, tr("Quick Start Guide"));
    add(ManualAction, tr("Manual"));
    add(NameplateAction, tr("Nameplate"));
    makeKindsOfAdding();
    add(SendFeedbackAction, tr("Send feedback"))
        ->setToolTip(tr("Send feedback to %1").arg(Constants::organizationName));
}

QAction *WindowCommands::add(ActionId id, const QString &text, const char *icon)
{
    auto *action = new QAction(text, this);
    if (icon)
        action->setIcon(QIcon(QLatin1String(icon)));
    m_actions.insert(id, action);
    return action;
}

void WindowCommands::makeKindsOfAdding()
{
    //: a short "external", on a button of the tool bar
    QAction *external = add(ExternalAction, tr("Ext"));
    external->setToolTip(tr("Link to files (keep external)"));
    //: a short "internal", on a button of the tool bar
    QAction *internal = add(InternalAction, tr("Int"));
    internal->setToolTip(tr("Copy files into database (make internal)"));
    auto *kinds = new QActionGroup(this);
    for (QAction *kind : {external, internal}) {
        kind->setCheckable(true);
        kinds->addAction(kind);
    }
    (AddingSettings::linkToFiles() ? external : internal)->setChecked(true);
}

void WindowCommands::takePlaces(MainUi &ui, const QList<QAction *> &recentDatabases)
{
    ui.databaseMenu->addActions(
        {action(ConnectAction), action(DisconnectAction), action(OpenAction), action(NewDatabaseAction)});
    ui.databaseMenu->addSeparator();
    ui.databaseMenu->addActions(recentDatabases);
    ui.databaseMenu->addSeparator();
    QMenu *importMenu = ui.databaseMenu->addMenu(QIcon(QStringLiteral(":/icons/import.png")), tr("Import"));
    importMenu->setObjectName(QStringLiteral("importMenu"));
    importMenu->addActions({action(ImportDatabaseAction), action(ImportShellAction)});
    m_actions.insert(ImportMenuAction, importMenu->menuAction());
    m_actions.insert(ExportMenuAction, ui.databaseMenu->addMenu(ui.exportMenu));
    ui.databaseMenu->addAction(action(ExitAction));

    // Before what the views have put there already.
    ui.viewMenu->insertActions(
        ui.viewMenu->actions().value(0),
        {action(DatabaseInfoAction), action(ShowAllDocksAction), action(SelectBrowsingTreeAction)});
    ui.editMenu->insertActions(ui.editMenu->actions().value(0),
                               {action(PreferencesAction), action(TagGroupsAction),
                                action(BrowsingTreeListAction), action(RemakeThumbnailsAction)});
    m_actions.insert(EditMenuAction, ui.editMenu->menuAction());
    ui.helpMenu->addActions({action(QuickStartAction), action(ManualAction), action(NameplateAction)});
    ui.fileToolsBar->addActions({action(ExternalAction), action(InternalAction), action(SendFeedbackAction)});
    // The style sheet knows it by its name.
    ui.fileToolsBar->widgetForAction(action(SendFeedbackAction))
        ->setObjectName(QStringLiteral("feedbackButton"));
}

void WindowCommands::updateAvailability(const Collection *collection)
{
    for (const ActionId id : {DisconnectAction, DatabaseInfoAction, EditMenuAction, PreferencesAction})
        action(id)->setEnabled(collection);
    const bool isServer = collection && collection->dbType() == Constants::serverDatabase;
    for (const ActionId id : {BrowsingTreeListAction, SelectBrowsingTreeAction})
        action(id)->setVisible(isServer);
    // A server has no file that another one could be merged into.
    const bool takesImports = collection && !isServer && !collection->isReadOnly();
    for (const ActionId id : {ImportMenuAction, ImportDatabaseAction, ImportShellAction})
        action(id)->setEnabled(takesImports);
    action(ExportMenuAction)->setEnabled(!isServer);
    for (const ActionId id : {TagGroupsAction, RemakeThumbnailsAction})
        action(id)->setEnabled(collection && !collection->isReadOnly());
}

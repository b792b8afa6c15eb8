// The construction of MainWindow: its docks, menus and tool bars, and the wiring of a collection.

#include "app/settings/addingsettings.h"
#include "app/settings/constants.h"
#include "app/settings/showntext.h"
#include "app/settings/windowsettings.h"
#include "app/window/actionid.h"
#include "app/window/databaseerrors.h"
#include "app/window/mainwindow.h"
#include "app/window/recentdatabases.h"
#include "core/controllers/browstreecontroller.h"
#include "core/controllers/collection.h"
#include "core/controllers/groupscontroller.h"
#include "core/controllers/mainviewcontroller.h"
#include "core/controllers/relationscontroller.h"
#include "core/controllers/tagscontroller.h"
#include "ui/dialogs/fileoperationprogress.h"
#include "ui/dialogs/helpwindow.h"
#include "ui/dialogs/popupmessager.h"
#include "ui/docks/browsingtreeviewdock.h"
#include "ui/docks/docktabbars.h"
#include "ui/docks/externalfilesdock.h"
#include "ui/docks/metainfodock.h"
#include "ui/docks/relationtreeviewdock.h"
#include "ui/docks/tagstabledock.h"
#include "ui/views/mainfilesview.h"
#include "ui/widgets/mainui.h"

#include <QAction>
#include <QActionGroup>
#include <QLayout>
#include <QMenu>
#include <QMenuBar>
#include <QScreen>
#include <QStatusBar>
#include <QToolBar>

namespace {
constexpr int tagsWidth = 165;
constexpr int treesWidth = 270;
constexpr int metadataHeight = 110;
constexpr int externalFilesHeight = 140;
} // namespace

MainWindow::MainWindow(QWidget *parent)
    : QMainWindow(parent),
      m_popupMessager(new PopupMessager(this)),
      m_progress(new FileOperationProgress(this)),
      m_errors(new DatabaseErrors(this)),
      m_recentDatabases(new RecentDatabases(this))
{
    setObjectName(QStringLiteral("MainWindow"));
    // With its frame no larger than a small screen, or one that is enlarged.
    resize(QSize(768, 589).boundedTo(screen()->availableSize() * 9 / 10));
    statusBar();

    makeDocks();
    MainUi ui(this);
    setUpCommands(ui);
    setCentralWidget(m_mainView);
    setDocksArrangement();
    arrangeTabOrder(ui);

    connect(m_mainView, &MainFilesView::fileSelected, m_metadataDock, &MetaInfoDock::selectFile);
    // Questions come when the drag has ended.
    connect(m_externalFilesDock, &ExternalFilesDock::filesDropped, m_mainView,
            &MainFilesView::extractFilesInFolder, Qt::QueuedConnection);
    connect(m_mainView, &MainFilesView::statusTextChanged, this,
            [this](const QString &text) { statusBar()->showMessage(ShownText::cut(text), 0); });
    connect(m_recentDatabases, &RecentDatabases::chosen, this, &MainWindow::openRecentDatabase);
    connect(m_errors, &DatabaseErrors::openAnotherRequested, this,
            [this] { runWhenIdle([this] { slotOpenDb(); }); });
    connect(m_errors, &DatabaseErrors::closeRequested, this, &MainWindow::closeWhenIdle);
    m_recentDatabases->load();
    updateDatabaseActions();
    restoreLayout();
    updateWindowTitle();
}

void MainWindow::makeDocks()
{
    new DockTabBars(this);
    m_mainView = new MainFilesView(this);
    m_tagsDock = new TagsTableDock(this);
    m_tagsDock->setObjectName(QStringLiteral("TagsDock"));
    m_relationsDock = new RelationTreeViewDock(this);
    m_relationsDock->setObjectName(QStringLiteral("RelationsDock"));
    m_metadataDock = new MetaInfoDock(this);
    m_metadataDock->setObjectName(QStringLiteral("MetaDataDock"));
    m_browsingDock = new BrowsingTreeViewDock(this);
    m_browsingDock->setObjectName(QStringLiteral("BrowsingTreeDock"));
    m_externalFilesDock = new ExternalFilesDock(this);
}

void MainWindow::setDocksArrangement()
{
    setDockOptions(QMainWindow::AllowNestedDocks | QMainWindow::AllowTabbedDocks);
    const QList<QDockWidget *> docks{m_tagsDock, m_externalFilesDock, m_metadataDock, m_relationsDock,
                                     m_browsingDock};
    for (QDockWidget *dock : docks)
        dock->setFloating(false);
    addDockWidget(Qt::LeftDockWidgetArea, m_tagsDock);
    addDockWidget(Qt::BottomDockWidgetArea, m_externalFilesDock);
    addDockWidget(Qt::RightDockWidgetArea, m_metadataDock);
    splitDockWidget(m_tagsDock, m_relationsDock, Qt::Horizontal);
    splitDockWidget(m_relationsDock, m_metadataDock, Qt::Vertical);
    tabifyDockWidget(m_relationsDock, m_browsingDock);
    for (QDockWidget *dock : docks)
        dock->show();
    m_browsingDock->raise();
    // The files are what the window is for: they get all room that the docks do not need.
    layout()->activate();
    resizeDocks({m_tagsDock, m_relationsDock}, {tagsWidth, treesWidth}, Qt::Horizontal);
    resizeDocks({m_externalFilesDock, m_relationsDock, m_metadataDock},
                {externalFilesHeight, 3 * metadataHeight, metadataHeight}, Qt::Vertical);
}

void MainWindow::setUpCommands(MainUi &ui)
{
    fillDatabaseMenu(ui);
    m_mainView->takePlaces(ui);
    m_tagsDock->takePlaces(ui);
    m_browsingDock->takePlaces(ui);
    fillOtherMenus(ui);
    fillFileTools(ui);
    ui.makeBarsReachable();
}

QAction *MainWindow::addAction(int id, const QString &text, const QString &icon)
{
    auto *action = new QAction(text, this);
    if (!icon.isEmpty())
        action->setIcon(QIcon(icon));
    m_actions.insert(id, action);
    return action;
}

void MainWindow::fillDatabaseMenu(MainUi &ui)
{
    QMenu *menu = ui.databaseMenu;
    QAction *connection = addAction(ConnectAction, tr("Connect"), QStringLiteral(":/icons/folder.png"));
    connect(connection, &QAction::triggered, this, &MainWindow::slotConnectDb);
    QAction *disconnection = addAction(DisconnectAction, tr("Disconnect"));
    connect(disconnection, &QAction::triggered, this, &MainWindow::slotDisconnectDb);
    QAction *open = addAction(OpenAction, tr("Open"), QStringLiteral(":/icons/folder.png"));
    connect(open, &QAction::triggered, this, &MainWindow::slotOpenDb);
    QAction *create =
        addAction(NewDatabaseAction, tr("New Local Database"), QStringLiteral(":/icons/new.png"));
    connect(create, &QAction::triggered, this, &MainWindow::newDatabase);
    QAction *exit = addAction(ExitAction, tr("Exit"), QStringLiteral(":/icons/close.png"));
    connect(exit, &QAction::triggered, this, &QWidget::close);

    menu->addActions({connection, disconnection, open, create});
    menu->addSeparator();
    menu->addActions(m_recentDatabases->actions());
    menu->addSeparator();
    menu->addAction(exit);
}

void MainWindow::fillOtherMenus(MainUi &ui)
{
    QAction *info = addAction(DatabaseInfoAction, tr("Database Info"));
    connect(info, &QAction::triggered, this, &MainWindow::showDatabaseVersion);
    QAction *docks = addAction(ShowAllDocksAction, tr("Show All Docks"));
    connect(docks, &QAction::triggered, this, &MainWindow::setDocksArrangement);
    QAction *selectTree = addAction(SelectBrowsingTreeAction, tr("Select Browsing Tree"));
    connect(selectTree, &QAction::triggered, this, &MainWindow::slotOpenBrowsinTree);
    ui.viewMenu->addActions({info, docks, selectTree});

    QAction *groups = addAction(TagGroupsAction, tr("Tag Groups"));
    connect(groups, &QAction::triggered, this, &MainWindow::showEditTagGroups);
    QAction *trees = addAction(BrowsingTreeListAction, tr("Browsing Tree List"));
    connect(trees, &QAction::triggered, this, &MainWindow::slotOpenBrowsinTree);
    QAction *thumbnails = addAction(RemakeThumbnailsAction, tr("Remake thumbnails"));
    connect(thumbnails, &QAction::triggered, this, &MainWindow::remakeThumbnails);
    ui.editMenu->addActions({groups, trees, thumbnails});
    m_actions.insert(EditMenuAction, ui.editMenu->menuAction());

    QAction *guide = addAction(QuickStartAction, tr("Quick Start Guide"));
    connect(guide, &QAction::triggered, this, [] { (new HelpWindow(HelpWindow::QuickStartGuide))->show(); });
    QAction *manual = addAction(ManualAction, tr("Manual"));
    connect(manual, &QAction::triggered, this, &MainWindow::showManual);
    QAction *nameplate = addAction(NameplateAction, tr("Nameplate"));
    connect(nameplate, &QAction::triggered, this, &MainWindow::showNameplate);
    ui.helpMenu->addActions({guide, manual, nameplate});
}

void MainWindow::fillFileTools(MainUi &ui)
{
    QAction *external = addAction(ExternalAction, tr("Ext"));
    external->setToolTip(tr("Link to files (keep external)"));
    QAction *internal = addAction(InternalAction, tr("Int"));
    internal->setToolTip(tr("Copy files into database (make internal)"));
    auto *kinds = new QActionGroup(this);
    for (QAction *action : {external, internal}) {
        action->setCheckable(true);
        kinds->addAction(action);
    }
    (AddingSettings::linkToFiles() ? external : internal)->setChecked(true);
    connect(external, &QAction::toggled, this, &MainWindow::slotExternalToggled);
    ui.fileToolsBar->addActions({external, internal});
}

void MainWindow::arrangeTabOrder(const MainUi &ui)
{
    // As the eye goes: the bars, then the docks and the files from left to right and down.
    QWidgetList parts;
    for (QToolBar *bar : ui.toolBars())
        parts << bar;
    parts << m_tagsDock << m_relationsDock << m_browsingDock << m_metadataDock << m_mainView
          << m_externalFilesDock;
    QWidget *before = nullptr;
    for (QWidget *part : qAsConst(parts)) {
        for (QWidget *control : part->findChildren<QWidget *>()) {
            if (!(control->focusPolicy() & Qt::TabFocus))
                continue;
            if (before)
                setTabOrder(before, control);
            before = control;
        }
    }
}

void MainWindow::restoreLayout()
{
    restoreState(WindowSettings::layout(WindowSettings::mainWindowState));
    restoreGeometry(WindowSettings::layout(WindowSettings::mainWindowGeometry));
}

void MainWindow::connectCollection()
{
    Collection *collection = m_collection;
    connect(collection, &Collection::showTempWarning, m_popupMessager, &PopupMessager::showTempWarning);
    connect(collection, &Collection::showError, m_popupMessager, &PopupMessager::showWarning);
    connect(collection, &Collection::duplicatesReady, this, &MainWindow::promptAboutDuplicates);
    connect(collection, &Collection::connectionError, this, &MainWindow::slotConnectionError);
    connect(collection, &Collection::errorOccured, this, &MainWindow::slotDBErrorOccured);
    connect(collection, &Collection::loadingProgress, this, &MainWindow::openingProgress);
    connect(collection, &Collection::operationFailed, m_errors, &DatabaseErrors::report);
    connect(collection, &Collection::allDataReloaded, m_browsingDock, &BrowsingTreeViewDock::updateTitle);
    m_browsingDock->followReloads(collection);
    m_relationsDock->followReloads(collection);

    connect(collection->tagsController(), &TagsController::tagDuplicated, this,
            &MainWindow::showTagDublicated, Qt::UniqueConnection);
    connect(collection->groupsController(), &GroupsController::groupDuplicated, this,
            &MainWindow::showGroupDublicated, Qt::UniqueConnection);
    MainViewController *files = collection->mainViewController();
    connect(files, &MainViewController::startedAddingFiles, this, &MainWindow::startAddingFilesProgresDialog,
            Qt::UniqueConnection);
    connect(files, &MainViewController::addingFilesProgress, this, &MainWindow::progressAddingFilesDialog,
            Qt::UniqueConnection);
    connect(files, &MainViewController::finishedAddingFiles, this,
            &MainWindow::finishAddingFilesProgresDialog, Qt::UniqueConnection);
    connect(m_progress, &FileOperationProgress::canceled, files, &MainViewController::cancelOperations,
            Qt::UniqueConnection);
}

void MainWindow::attachControllers()
{
    m_tagsDock->setTagsController(m_collection->tagsController());
    m_tagsDock->setGroupsController(m_collection->groupsController());
    m_relationsDock->setController(m_collection->relationsController());
    m_browsingDock->setController(m_collection->browsTreeController());
    m_mainView->setController(m_collection->mainViewController());
    m_metadataDock->setController(m_collection->mainViewController());
    m_externalFilesDock->setController(m_collection->mainViewController());
}

void MainWindow::detachControllers()
{
    m_browsingDock->setController(nullptr);
    m_tagsDock->setTagsController(nullptr);
    m_tagsDock->setGroupsController(nullptr);
    m_mainView->setController(nullptr);
    m_relationsDock->setController(nullptr);
    m_metadataDock->setController(nullptr);
    m_externalFilesDock->setController(nullptr);
}

void MainWindow::updateDatabaseActions()
{
    for (const int id : {DisconnectAction, DatabaseInfoAction, EditMenuAction})
        m_actions.value(id)->setEnabled(m_collection);
    const bool isServer = m_collection && m_collection->dbType() == Constants::serverDatabase;
    for (const int id : {BrowsingTreeListAction, SelectBrowsingTreeAction})
        m_actions.value(id)->setVisible(isServer);
    for (const int id : {TagGroupsAction, RemakeThumbnailsAction})
        m_actions.value(id)->setEnabled(m_collection && !m_collection->isReadOnly());
}

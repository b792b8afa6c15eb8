#include "app/window/mainwindow.h"

#include "app/messages/messages.h"
#include "app/settings/addingsettings.h"
#include "app/settings/collectionidentity.h"
#include "app/settings/constants.h"
#include "app/window/collectionopener.h"
#include "app/window/databaseerrors.h"
#include "app/window/databaseimport.h"
#include "app/window/databasemaker.h"
#include "app/window/idlesteps.h"
#include "app/window/openingprogress.h"
#include "app/window/recentdatabases.h"
#include "app/window/reloadprogress.h"
#include "app/window/serverconnections.h"
#include "app/window/undoactions.h"
#include "app/window/updatebar.h"
#include "app/window/windowcommands.h"
#include "app/window/windowparts.h"
#include "core/controllers/collection.h"
#include "core/controllers/groupscontroller.h"
#include "core/controllers/mainviewcontroller.h"
#include "core/controllers/tagscontroller.h"
#include "ui/dialogs/feedbackdialog.h"
#include "ui/dialogs/fileoperationprogress.h"
#include "ui/dialogs/helpwindow.h"
#include "ui/dialogs/popupmessager.h"
#include "ui/dialogs/preferencesdialog.h"
#include "ui/docks/browsingtreeviewdock.h"
#include "ui/views/mainfilesview.h"
#include "ui/widgets/bringtofront.h"
#include "ui/widgets/fontscale.h"
#include "ui/widgets/mainui.h"

#include <QAction>
#include <QPointer>
#include <QScreen>
#include <QSettings>
#include <QSqlError>
#include <QStatusBar>

MainWindow::MainWindow(QWidget *parent)
    : QMainWindow(parent),
      m_popupMessager(new PopupMessager(this)),
      m_progress(new FileOperationProgress(this)),
      m_errors(new DatabaseErrors(this)),
      m_recentDatabases(new RecentDatabases(this)),
      m_choice([this](const DBDetails &details) { return openDatabase(details) || m_wasOpeningCanceled; },
               [this] { return openDetails(); }, m_recentDatabases, this),
      m_servers(new ServerConnections(
          [this](const DBDetails &details) { return openDatabase(details) || m_wasOpeningCanceled; }, this)),
      m_dialogs(m_popupMessager, this),
      m_maker(new DatabaseMaker([this](const DBDetails &details) { return openDatabase(details); },
                                [this] { return m_collection ? m_collection->databaseName() : QString(); },
                                this)),
      m_import(new DatabaseImport(this)),
      m_idle(new IdleSteps(this)),
      m_commands(new WindowCommands(this)),
      m_undo(new UndoActions(this)),
      m_updates(new UpdateBar(this)),
      m_layout(this, m_updates)
{
    setObjectName(QStringLiteral("MainWindow"));
    // With its frame no larger than a small screen, or one that is enlarged.
    resize(FontScale::byFont(QSize(768, 589), this).boundedTo(screen()->availableSize() * 9 / 10));
    statusBar();

    m_parts = new WindowParts(this);
    MainUi ui(this);
    m_parts->takePlaces(ui);
    m_commands->takePlaces(ui, m_recentDatabases->actions());
    m_undo->takePlaces(ui);
    m_updates->takePlaces(ui);
    ui.makeBarsReachable();
    connectCommands();
    setCentralWidget(m_parts->files());
    setDocksArrangement();
    m_parts->arrangeTabOrder(ui);

    connect(m_recentDatabases, &RecentDatabases::chosen, this, &MainWindow::openRecentDatabase);
    connect(m_errors, &DatabaseErrors::openAnotherRequested, this,
            [this] { m_idle->run([this] { slotOpenDb(); }); });
    connect(m_errors, &DatabaseErrors::closeRequested, this, &MainWindow::closeWhenIdle);
    m_recentDatabases->load();
    updateDatabaseActions();
    m_updates->readSettings();
    m_layout.restore();
    updateWindowTitle();
}

void MainWindow::connectCommands()
{
    const auto onTriggered = [this](ActionId id, void (MainWindow::*slot)()) {
        connect(m_commands->action(id), &QAction::triggered, this, slot);
    };
    onTriggered(ConnectAction, &MainWindow::slotConnectDb);
    onTriggered(DisconnectAction, &MainWindow::slotDisconnectDb);
    onTriggered(OpenAction, &MainWindow::slotOpenDb);
    onTriggered(NewDatabaseAction, &MainWindow::newDatabase);
    connect(m_commands->action(ExitAction), &QAction::triggered, this, &QWidget::close);
    onTriggered(ImportDatabaseAction, &MainWindow::importDatabase);
    onTriggered(ImportShellAction, &MainWindow::importShell);
    onTriggered(DatabaseInfoAction, &MainWindow::showDatabaseVersion);
    onTriggered(ShowAllDocksAction, &MainWindow::setDocksArrangement);
    onTriggered(SelectBrowsingTreeAction, &MainWindow::slotOpenBrowsinTree);
    onTriggered(PreferencesAction, &MainWindow::showPreferences);
    onTriggered(TagGroupsAction, &MainWindow::showEditTagGroups);
    onTriggered(BrowsingTreeListAction, &MainWindow::slotOpenBrowsinTree);
    onTriggered(RemakeThumbnailsAction, &MainWindow::remakeThumbnails);
    connect(m_commands->action(QuickStartAction), &QAction::triggered, this,
            [] { (new HelpWindow(HelpWindow::QuickStartGuide))->show(); });
    onTriggered(ManualAction, &MainWindow::showManual);
    onTriggered(NameplateAction, &MainWindow::showNameplate);
    connect(m_commands->action(ExternalAction), &QAction::toggled, this, &MainWindow::slotExternalToggled);
    onTriggered(SendFeedbackAction, &MainWindow::slotSendFeedback);
}

MainWindow::~MainWindow()
{
    closeDatabase();
    m_recentDatabases->save();
    m_layout.storeAtTheEnd();
}

bool MainWindow::event(QEvent *event)
{
    if (event->type() == QEvent::Close && !mayLeaveDatabase()) {
        event->ignore();
        return true;
    }
    // No command has a text for the status bar; the empty ones of the menus would wipe out the count of
    // files.
    const bool isHandled = event->type() == QEvent::StatusTip || QMainWindow::event(event);
    m_layout.follow(*event);
    return isHandled;
}

bool MainWindow::openDatabase(const DBDetails &details)
{
    m_wasOpeningCanceled = false;
    if (!Collection::canOpen(details, m_prompts))
        return false;
    const OpeningProgress progress(statusBar());
    closeDatabase();
    statusBar()->clearMessage();

    const IdleSteps::Hold hold(m_idle);
    bool opened = false;
    m_collection = makeCollection(details.type(), details.host(), details.databaseName(), details.user(),
                                  details.password(), details.port());
    if (m_collection) {
        m_collection->setParent(this);
        m_collection->setPrompts(m_prompts);
        connectCollection();
        if (details.type() == Constants::localDatabase)
            emit databaseChanged(details.databaseName());
        connect(m_collection, &Collection::loadingProgress, &progress, &OpeningProgress::setPercent);
        CollectionOpener opener(this);
        opened = opener.open(*m_collection);
        m_wasOpeningCanceled = opener.wasCanceled();
        if (opened) {
            m_parts->attach(*m_collection);
            m_undo->setHistory(m_collection->history());
            rememberRecentDatabase();
            // Nothing is shown yet: the next step is to choose a node.
            m_parts->browsingDock()->widget()->setFocus();
        } else {
            closeDatabase();
        }
    }
    updateDatabaseActions();
    updateWindowTitle();
    return opened;
}

void MainWindow::connectCollection()
{
    Collection *collection = m_collection;
    connect(collection, &Collection::showTempWarning, m_popupMessager, &PopupMessager::showTempWarning);
    connect(collection, &Collection::showError, m_popupMessager, &PopupMessager::showWarning);
    connect(collection, &Collection::showInformation, m_popupMessager, &PopupMessager::showInformation);
    connect(collection, &Collection::duplicatesReady, this, &MainWindow::promptAboutDuplicates);
    connect(collection, &Collection::importNotification, this, &MainWindow::showShellFilesNotImported);
    connect(collection, &Collection::connectionError, this, &MainWindow::slotConnectionError);
    connect(collection, &Collection::errorOccured, this, &MainWindow::slotDBErrorOccured);
    connect(collection, &Collection::loadingProgress, this, &MainWindow::openingProgress);
    connect(collection, &Collection::operationFailed, m_errors, &DatabaseErrors::report);
    m_parts->followReloads(collection);
    new ReloadProgress(collection, statusBar());

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

bool MainWindow::mayLeaveDatabase()
{
    QWidget *const refused = m_parts->files()->savePreviews();
    if (refused)
        m_popupMessager->moveTempWarning(refused);
    return !refused;
}

void MainWindow::closeDatabase()
{
    if (m_collection) {
        // What previewers have to save goes to the database that it belongs to.
        m_parts->files()->closePreviews();
        m_servers->remember(m_collection->details());
        m_parts->detach();
        m_undo->setHistory(nullptr);
        m_collection->close();
        delete m_collection;
        m_collection = nullptr;
        m_progress->hide();
        m_errors->databaseClosed();
        emit databaseChanged({});
    }
    updateDatabaseActions();
    updateWindowTitle();
    QSettings().sync();
}

void MainWindow::openStartupDatabase(const QString &path, StartupSource source)
{
    if (path.isEmpty())
        m_choice.openNewest();
    else
        m_choice.openNamed(path,
                           source == FromCommandLine ? DatabaseChoice::IsTold : DatabaseChoice::IsIgnored);
    updateWindowTitle();
}

void MainWindow::comeForward(const QString &shellPath)
{
    if (isVisible())
        bringToFront(this);
    if (!shellPath.isEmpty())
        importShellFile(shellPath);
}

void MainWindow::importShellFile(const QString &path)
{
    m_idle->run([this, path] {
        const IdleSteps::Hold hold(m_idle);
        m_import->runShell(m_collection, path);
    });
}

DBDetails MainWindow::openDetails() const
{
    return m_collection ? m_collection->details() : DBDetails();
}

void MainWindow::rememberRecentDatabase()
{
    m_recentDatabases->remember(openDetails());
}

void MainWindow::openRecentDatabase(const DBDetails &details)
{
    if (!mayLeaveDatabase())
        return;
    if (details.type() == Constants::serverDatabase)
        m_servers->openRecent(details);
    else
        m_choice.openRecent(details);
}

void MainWindow::slotOpenDb()
{
    if (mayLeaveDatabase())
        m_choice.ask();
}

void MainWindow::slotConnectDb()
{
    if (mayLeaveDatabase())
        m_servers->ask();
}

void MainWindow::slotDisconnectDb()
{
    if (m_collection && mayLeaveDatabase())
        closeDatabase();
}

void MainWindow::newDatabase()
{
    if (!mayLeaveDatabase())
        return;
    if (m_maker->make() == DatabaseMaker::NotOpened)
        closeDatabase();
}

void MainWindow::closeWhenIdle()
{
    // Another database may be open by then: it is not the one that was meant.
    const QPointer<Collection> doomed = m_collection;
    m_idle->run([this, doomed] {
        if (doomed && doomed == m_collection)
            closeDatabase();
    });
}

void MainWindow::importDatabase()
{
    const IdleSteps::Hold hold(m_idle);
    m_import->run(m_collection, false);
}

void MainWindow::importShell()
{
    const IdleSteps::Hold hold(m_idle);
    m_import->run(m_collection, true);
}

void MainWindow::showShellFilesNotImported(const QList<ShellFile> &files)
{
    m_import->showNotImported(files);
}

void MainWindow::showDatabaseVersion()
{
    m_dialogs.tellVersion(m_collection);
}

void MainWindow::remakeThumbnails()
{
    m_parts->files()->remakeThumbnails();
}

void MainWindow::showPreferences()
{
    PreferencesDialog(m_updates->handler(), this).exec();
    m_updates->readSettings();
    m_parts->files()->readSettings();
    if (m_collection)
        m_collection->readSettings();
}

void MainWindow::showEditTagGroups()
{
    m_dialogs.editTagGroups(m_collection);
}

void MainWindow::slotOpenBrowsinTree()
{
    if (m_dialogs.chooseBrowsingTree(m_collection))
        m_parts->browsingDock()->updateTitle();
}

void MainWindow::setDocksArrangement()
{
    m_parts->arrangeDocks();
}

void MainWindow::showManual()
{
    (new HelpWindow(HelpWindow::Manual))->show();
}

void MainWindow::showNameplate()
{
    QMessageBox::about(this, tr("Nameplate"),
                       QStringLiteral("<h4>%1</h4><p>%2</p><p>%3</p>")
                           .arg(Constants::applicationName, tr("Version %1").arg(Constants::programVersion),
                                Constants::organizationName));
}

void MainWindow::showGroupDublicated()
{
    Messages::information(this, tr("Tag Group Name Conflict"),
                          tr("A tag group with this name already exists."));
}

void MainWindow::showTagDublicated()
{
    Messages::warning(this, tr("Tag already exists"), tr("There is already a tag with this name."));
}

void MainWindow::slotExternalToggled(bool external)
{
    AddingSettings::setLinkToFiles(external);
}

void MainWindow::slotSendFeedback()
{
    // The same one again until its message has arrived: what was typed is not lost with a key.
    if (!m_feedback)
        m_feedback = new FeedbackDialog(this);
    m_feedback->show();
    bringToFront(m_feedback);
}

void MainWindow::startAddingFilesProgresDialog(const QString &text)
{
    m_progress->startProgress(text);
    m_progress->setMaximumToPercent();
}

void MainWindow::progressAddingFilesDialog(const QString &text, int value)
{
    m_progress->doingSomething(text);
    if (value < 0)
        m_progress->setProgressUnknown();
    else
        m_progress->setProgress(value);
}

void MainWindow::finishAddingFilesProgresDialog()
{
    m_progress->hide();
}

void MainWindow::promptAboutDuplicates(const PresentableDuplicates &duplicates)
{
    const IdleSteps::Hold hold(m_idle);
    m_dialogs.promptAboutDuplicates(duplicates, m_collection);
}

void MainWindow::slotConnectionError()
{
    m_errors->reportConnectionLoss();
}

void MainWindow::slotDBErrorOccured(const QSqlError &error)
{
    m_errors->report(error);
}

void MainWindow::updateWindowTitle()
{
    QString name = m_collection ? CollectionIdentity::displayText(m_collection->details()) : QString();
    // Alone it would stand for the mark of unsaved changes.
    name.replace(QLatin1String("[*]"), QLatin1String("[*][*]"));
    setWindowTitle(tr("Vorna - %1").arg(name));
}

void MainWindow::updateDatabaseActions()
{
    m_commands->updateAvailability(m_collection);
}

#include "app/window/mainwindow.h"

#include "app/messages/filedialogs.h"
#include "app/messages/messages.h"
#include "app/settings/addingsettings.h"
#include "app/settings/collectionidentity.h"
#include "app/settings/constants.h"
#include "app/settings/windowsettings.h"
#include "app/window/actionid.h"
#include "app/window/collectionopener.h"
#include "app/window/databaseerrors.h"
#include "app/window/openingprogress.h"
#include "app/window/recentdatabases.h"
#include "app/window/replacedfile.h"
#include "core/controllers/collection.h"
#include "core/controllers/groupscontroller.h"
#include "core/controllers/mainviewcontroller.h"
#include "ui/dialogs/duplicateprompt.h"
#include "ui/dialogs/fileoperationprogress.h"
#include "ui/dialogs/helpwindow.h"
#include "ui/dialogs/popupmessager.h"
#include "ui/dialogs/taggroupingdialog.h"
#include "ui/docks/browsingtreeviewdock.h"
#include "ui/views/mainfilesview.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QPointer>
#include <QScopedValueRollback>
#include <QSettings>
#include <QSqlError>
#include <QStatusBar>
#include <QThread>
#include <QTimer>

#include <memory>

MainWindow::~MainWindow()
{
    closeDatabase();
    m_recentDatabases->save();
    WindowSettings::setLayout(WindowSettings::mainWindowState, saveState());
    WindowSettings::setLayout(WindowSettings::mainWindowGeometry, saveGeometry());
}

bool MainWindow::event(QEvent *event)
{
    if (event->type() == QEvent::Close && !mayLeaveDatabase()) {
        event->ignore();
        return true;
    }
    // No command has a text for the status bar; the empty ones of the menus would wipe out the count of
    // files.
    return event->type() == QEvent::StatusTip || QMainWindow::event(event);
}

bool MainWindow::openDatabase(const DBDetails &details)
{
    if (!Collection::canOpen(details, m_prompts))
        return false;
    const OpeningProgress progress(statusBar());
    closeDatabase();
    statusBar()->clearMessage();

    const QScopedValueRollback<bool> busy(m_isBusy, true);
    bool opened = false;
    m_collection = makeCollection(details.type(), details.host(), details.databaseName(), details.user(),
                                  details.password(), details.port());
    if (m_collection) {
        m_collection->setParent(this);
        m_collection->setPrompts(m_prompts);
        connectCollection();
        connect(m_collection, &Collection::loadingProgress, &progress, &OpeningProgress::setPercent);
        opened = CollectionOpener(this).open(*m_collection);
        if (opened) {
            attachControllers();
            rememberRecentDatabase();
            // Nothing is shown yet: the next step is to choose a node.
            m_browsingDock->widget()->setFocus();
        } else {
            closeDatabase();
        }
    }
    updateDatabaseActions();
    updateWindowTitle();
    return opened;
}

bool MainWindow::mayLeaveDatabase()
{
    QWidget *const refused = m_mainView->savePreviews();
    if (refused)
        m_popupMessager->moveTempWarning(refused);
    return !refused;
}

void MainWindow::closeDatabase()
{
    if (m_collection) {
        // What previewers have to save goes to the database that it belongs to.
        m_mainView->closePreviews();
        rememberRunConnection();
        detachControllers();
        m_collection->close();
        delete m_collection;
        m_collection = nullptr;
        m_progress->hide();
        m_errors->databaseClosed();
    }
    updateDatabaseActions();
    updateWindowTitle();
    QSettings().sync();
}

void MainWindow::openStartupDatabase(const QString &path, StartupSource source)
{
    if (!path.isEmpty()) {
        const bool exists = QFileInfo(path).isFile();
        const bool opened = exists && openDatabase(DBDetails::local(QFileInfo(path).absoluteFilePath()));
        if (!opened && (exists || source == FromCommandLine))
            warnOfFailedOpening();
    } else {
        const DBDetails newest = m_recentDatabases->newest();
        if (newest.type() == Constants::localDatabase) {
            if (QFileInfo::exists(newest.databaseName()))
                openDatabase(newest);
            else
                rememberRecentDatabase();
        }
    }
    updateWindowTitle();
}

void MainWindow::rememberRecentDatabase()
{
    m_recentDatabases->remember(m_collection ? m_collection->details() : DBDetails());
}

void MainWindow::openRecentDatabase(const DBDetails &details)
{
    if (!mayLeaveDatabase())
        return;
    if (details.type() == Constants::serverDatabase)
        openRecentServer(details);
    else if (!QFileInfo::exists(details.databaseName()))
        rememberRecentDatabase();
    else if (!openDatabase(details))
        warnOfFailedOpening();
}

void MainWindow::warnOfFailedOpening()
{
    Messages::warning(this, tr("Failed to Open Database"),
                      tr("The selected database could not be opened successfully."));
}

void MainWindow::slotOpenDb()
{
    if (!mayLeaveDatabase())
        return;
    const QString path =
        FileDialogs::openFile(this, tr("Open Database"), WindowSettings::lastDatabaseDir(QDir::homePath()),
                              Constants::databaseFilter);
    const QFileInfo file(path);
    if (path.isEmpty() || !file.exists())
        return;
    WindowSettings::setLastDatabaseDir(file.absolutePath());
    if (!openDatabase(DBDetails::local(file.absoluteFilePath())))
        warnOfFailedOpening();
}

void MainWindow::newDatabase()
{
    if (!mayLeaveDatabase())
        return;
    QString path =
        FileDialogs::saveFile(this, tr("Create New Database"),
                              WindowSettings::lastDatabaseDir(QDir::homePath()), Constants::databaseFilter);
    if (path.isEmpty())
        return;
    path = QFileInfo(path).absoluteFilePath();
    WindowSettings::setLastDatabaseDir(QFileInfo(path).absolutePath());
    // The dialog has asked about the name as typed, not about a longer one.
    const bool isAppended = !path.endsWith(Constants::databaseExtension);
    if (isAppended)
        path += Constants::databaseExtension;
    ReplacedFile replaced(path);
    if (makeRoomForDatabase(replaced, path, isAppended) && createDatabase(path))
        replaced.discard();
}

bool MainWindow::isOpen(const QString &path) const
{
    return m_collection &&
           QFileInfo(m_collection->databaseName()).canonicalFilePath() == QFileInfo(path).canonicalFilePath();
}

bool MainWindow::makeRoomForDatabase(ReplacedFile &replaced, const QString &path, bool mustAsk)
{
    const QFileInfo file(path);
    if (!file.exists())
        return true;
    const QString title = tr("Failed to create database");
    if (isOpen(path)) {
        Messages::warning(this, title, tr("Cannot remove currently open database."));
        return false;
    }
    if (mustAsk) {
        Messages::Box box;
        box.icon = QMessageBox::Warning;
        box.title = tr("Create New Database");
        box.text = tr("%1 already exists.\nDo you want to replace it?").arg(path);
        box.buttons = QMessageBox::Yes | QMessageBox::Cancel;
        box.defaultButton = QMessageBox::Cancel;
        if (Messages::run(this, box).button != QMessageBox::Yes)
            return false;
    }
    if (!file.isFile() || !replaced.setAside()) {
        Messages::warning(this, title, tr("Failed to remove existent database."));
        return false;
    }
    return true;
}

bool MainWindow::createDatabase(const QString &path)
{
    const std::unique_ptr<Collection> maker(
        makeCollection(Constants::localDatabase, QString(), path, QString(), QString(), 0));
    if (!maker->createDatabase()) {
        ReplacedFile::removeDatabase(path);
        Messages::warning(this, tr("Failed to create database"),
                          tr("A database could not be created at this place."));
        return false;
    }
    if (openDatabase(DBDetails::local(path)))
        return true;
    Messages::warning(this, tr("Failed to open database"), tr("Failed to open new database."));
    ReplacedFile::removeDatabase(path);
    closeDatabase();
    return false;
}

void MainWindow::closeWhenIdle()
{
    // Another database may be open by then: it is not the one that was meant.
    const QPointer<Collection> doomed = m_collection;
    runWhenIdle([this, doomed] {
        if (doomed && doomed == m_collection)
            closeDatabase();
    });
}

void MainWindow::runWhenIdle(const std::function<void()> &step, int milliseconds)
{
    // A box, a menu or a drag that is open runs a loop of its own above objects that a close would delete.
    constexpr int retryMilliseconds = 50;
    QTimer::singleShot(milliseconds, this, [this, step] {
        if (m_isBusy || QThread::currentThread()->loopLevel() > 1)
            runWhenIdle(step, retryMilliseconds);
        else
            step();
    });
}

void MainWindow::showDatabaseVersion()
{
    if (!m_collection)
        return;
    Messages::information(
        this, tr("Database Info"),
        tr("Version of Vorna used to create the currently open database: %1\nDatabase permissions: %2")
            .arg(m_collection->dbVersion(), m_collection->isReadOnly() ? tr("read-only") : tr("writable")));
}

void MainWindow::remakeThumbnails()
{
    m_mainView->remakeThumbnails();
}

void MainWindow::showEditTagGroups()
{
    const QPointer<GroupsController> groups = m_collection ? m_collection->groupsController() : nullptr;
    if (!groups || groups->isReadOnly())
        return;
    TagGroupingDialog(groups, this).exec();
    if (groups) {
        groups->load();
        groups->refresh();
    }
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
    PresentableDuplicates shown = duplicates;
    if (!AddingSettings::listDuplicates()) {
        // Only the report may be silenced: files of equal names were left out and wait for an answer.
        shown.contentMatches.clear();
        shown.externalDuplicateGroups.clear();
    }
    const bool isEmpty = shown.contentMatches.isEmpty() && shown.nameMatches.isEmpty() &&
                         shown.externalDuplicateGroups.isEmpty();
    if (!m_collection)
        return;
    const QScopedValueRollback<bool> busy(m_isBusy, true);
    const QPointer<Collection> asked = m_collection;
    QStringList kept;
    if (!isEmpty) {
        DuplicatePrompt prompt(shown, m_collection->mainViewController(), this);
        if (prompt.exec() == QDialog::Accepted)
            kept = prompt.chosenPaths();
    }
    if (asked)
        asked->mainViewController()->addFilesList(kept);
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
    setWindowTitle(tr("Vorna - ") + name);
}

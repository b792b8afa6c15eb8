#pragma once

#include "app/messages/boxprompts.h"
#include "app/settings/dbdetails.h"
#include "app/window/databasechoice.h"
#include "app/window/databasedialogs.h"
#include "app/window/windowlayout.h"
#include "fileops/files/shellfile.h"
#include "fileops/worker/presentableduplicates.h"

#include <QMainWindow>
#include <QPointer>

class Collection;
class DatabaseErrors;
class DatabaseImport;
class DatabaseMaker;
class FeedbackDialog;
class FileOperationProgress;
class IdleSteps;
class PopupMessager;
class QSqlError;
class RecentDatabases;
class ServerConnections;
class UndoActions;
class UpdateBar;
class WindowCommands;
class WindowParts;

/**
 * The program's only top-level window. It owns the open Collection: every gesture that opens, creates or
 * closes a database ends here, and so do the collection's errors. GUI thread.
 */
class MainWindow : public QMainWindow
{
    Q_OBJECT

public:
    /** Where the database that is opened at the start comes from. */
    enum StartupSource { FromCommandLine, Demo };

    explicit MainWindow(QWidget *parent = nullptr);
    /** Closes the database and stores the window's state. */
    ~MainWindow() override;

    /**
     * Opens a database in place of the open one. False when that fails: then the open one stays, if the new
     * one was refused before it was touched.
     */
    bool openDatabase(const DBDetails &details);
    void closeDatabase();

    /**
     * Opens the first database of a run: the given path, or with an empty one the newest of the recent list.
     * A missing file opens and creates nothing; only one from the command line is worth a word.
     */
    void openStartupDatabase(const QString &path, StartupSource source = FromCommandLine);
    /** Shows the window above all others and, given the path of a shell, imports that. */
    void comeForward(const QString &shellPath);
    /** Into the open database, when nothing else is going on; asks first. */
    void importShellFile(const QString &path);

    /** The open collection or null. */
    Collection *collection() const { return m_collection; }

signals:
    /** How much of the files of a database has been read, while it is opened. */
    void openingProgress(int percent);
    /** The path of the local database that is open, or being opened, from now on; empty for none. */
    void databaseChanged(const QString &path);

public slots:
    void slotOpenDb();
    /** Asks for a database on a server until one opens or the user gives up. */
    void slotConnectDb();
    /** Closes the database; one on a server can be opened again in this run without its password. */
    void slotDisconnectDb();
    void newDatabase();
    void importDatabase();
    void importShell();
    /** None shows nothing. */
    void showShellFilesNotImported(const QList<ShellFile> &files);
    void showDatabaseVersion();
    /** Lets the user set the preferences; all of them take effect at once. */
    void showPreferences();
    void showEditTagGroups();
    void slotOpenBrowsinTree();
    void remakeThumbnails();
    void showManual();
    void showNameplate();
    void showGroupDublicated();
    void showTagDublicated();
    void slotExternalToggled(bool external);
    void slotSendFeedback();
    void startAddingFilesProgresDialog(const QString &text);
    void progressAddingFilesDialog(const QString &text, int value);
    void finishAddingFilesProgresDialog();
    void promptAboutDuplicates(const PresentableDuplicates &duplicates);
    void slotConnectionError();
    void slotDBErrorOccured(const QSqlError &error);
    /** Puts all docks back to their places and shows them. */
    void setDocksArrangement();

protected:
    bool event(QEvent *event) override;

private:
    void connectCommands();

    void connectCollection();
    /** False when something of the open database is still to be saved, which the user sees. */
    bool mayLeaveDatabase();
    /** Of no type without one. */
    DBDetails openDetails() const;
    void rememberRecentDatabase();
    void openRecentDatabase(const DBDetails &details);
    void closeWhenIdle();

    void updateWindowTitle();
    void updateDatabaseActions();

    PopupMessager *m_popupMessager;
    FileOperationProgress *m_progress;
    DatabaseErrors *m_errors;
    RecentDatabases *m_recentDatabases;
    DatabaseChoice m_choice;
    ServerConnections *m_servers;
    DatabaseDialogs m_dialogs;
    DatabaseMaker *m_maker;
    DatabaseImport *m_import;
    IdleSteps *m_idle;
    WindowCommands *m_commands;
    UndoActions *m_undo;
    UpdateBar *m_updates;
    WindowLayout m_layout;
    WindowParts *m_parts = nullptr;
    BoxPrompts m_prompts;
    Collection *m_collection = nullptr;
    bool m_wasOpeningCanceled = false; ///< the last one, by the user
    QPointer<FeedbackDialog> m_feedback;
};

#pragma once

#include "app/settings/dbdetails.h"
#include "db/manager/newscount.h"
#include "fileops/files/shellfile.h"
#include "fileops/worker/presentableduplicates.h"

#include <QObject>
#include <QSqlError>

#include <memory>

class AbstractQueryConstructor;
class BrowsTreeController;
class CollectionSettings;
class DatabaseManger;
class GroupsController;
class MainViewController;
class RelationsController;
class TagsController;
class UndoHistory;
class UserPrompts;

/**
 * One open database seen as a whole: what the window holds. It owns the manager and the controllers, hands
 * the controllers to the views and passes the manager's broad news on. Made by makeCollection, opened once,
 * loaded once; the views are detached before it is closed and deleted. GUI thread.
 */
class Collection : public QObject
{
    Q_OBJECT

public:
    ~Collection() override;

    /** Borrowed, for all that the collection and its controllers tell and ask; before open(). */
    void setPrompts(UserPrompts &prompts);
    UserPrompts &prompts() const { return *m_prompts; }

    /** An invalid error, or one of the type NoError, is success. */
    virtual QSqlError open();
    /** Waits for file operations to end, then closes the connections. */
    virtual void close();
    /** Makes a new, empty database at the place of this one; it is not opened by that. */
    virtual bool createDatabase();
    /** 1 local, 2 server, 0 without a manager. */
    virtual int dbType() const;
    enum Loading {
        Loaded,
        Locked,    ///< another program is in the way for now: another try may do
        Unreadable ///< not everything could be read; the errors have been told of, and edits are refused
    };
    /** Fills all records and models; after open() and before the controllers go to the views. */
    virtual Loading load();
    /**
     * The same in two steps: when the first gives Loaded, the second is to follow. In between files are read
     * until filesRead(), which the second would wait for.
     */
    Loading beginLoad();
    Loading finishLoad();
    /** Whether so many files are read that the event loop should go on until filesRead(). */
    bool areFilesMany() const;
    /** Takes over what the user has just set: all that is kept in memory of the settings. */
    void readSettings();
    /** Whether the numbers of files are to be known beside tags and nodes; they are at first. */
    void countFiles(bool on);

    virtual TagsController *tagsController() const { return m_tagsController; }
    virtual GroupsController *groupsController() const { return m_groupsController; }
    virtual BrowsTreeController *browsTreeController() const { return m_browsTreeController; }
    virtual MainViewController *mainViewController() const { return m_mainViewController; }
    virtual RelationsController *relationsController() const { return m_relationsController; }

    /** The edits that can be taken back. */
    UndoHistory *history() const { return m_history; }

    QString databaseName() const { return m_databaseName; }
    QString hostName() const { return m_hostName; }
    int port() const { return m_port; }
    QString userName() const { return m_userName; }
    QString password() const { return m_password; }
    bool isReadOnly() const;
    /** The version of the program that made the database. */
    QString dbVersion() const;
    DBDetails details() const;
    CollectionSettings *settings() const { return m_settings; }

    /** Whether a database can be opened; tells the user why not, and offers upgrades. */
    static bool canOpen(const DBDetails &details, UserPrompts &prompts);
    /** The names of all tags of a database that is not open. */
    static QStringList tagNames(const DBDetails &details);

signals:
    void connectionError();
    void errorOccured(QSqlError error);
    /** The same of an operation of files, with a sentence on how far it came. */
    void operationFailed(QSqlError error, QString outcome);
    /** Title and text of a message that goes away by itself. */
    void showTempWarning(QString title, QString text);
    /** Title and text of a message box. */
    void showError(QString title, QString text);
    /** The same for a word that nothing went wrong. */
    void showInformation(QString title, QString text);
    /** What an edit came to, in one sentence. */
    void happened(const QString &text);
    /** Nodes were made out of folders that were added. */
    void nodesMade(const QVector<qint64> &nodeIds);
    void duplicatesReady(PresentableDuplicates duplicates);
    void importNotification(QList<ShellFile> files);
    /** Around the taking in of a part of what others changed. */
    void aboutToMergeForeignChanges();
    void foreignChangesShown();
    /** What others changed has been taken in. */
    void foreignChangesMerged(NewsCount count);
    void aboutToReloadAllData();
    void allDataReloaded();
    /** How much of all files has been read, while they are. */
    void loadingProgress(int percent);
    /** All that beginLoad() has asked for is there, or will not come. */
    void filesRead();

protected:
    Collection(const QString &driver, const QString &host, const QString &databaseName, const QString &user,
               const QString &password, int port, QObject *parent = nullptr);

    /** Makes manager and controllers; the last act of a variant's constructor. */
    void build();
    virtual std::unique_ptr<AbstractQueryConstructor> makeQueryConstructor() const;
    /** Gives the manager of the back-end, with the collection as its parent. */
    virtual DatabaseManger *makeManager() = 0;
    virtual void makeControllers();

    QString driver() const { return m_driver; }

private:
    void connectManager();
    void introducePeers();
    void makeHistory();

    QString m_driver;
    QString m_databaseName;
    int m_port;
    QString m_hostName;
    QString m_userName;
    QString m_password;
    std::unique_ptr<AbstractQueryConstructor> m_queryConstructor;
    DatabaseManger *m_manager = nullptr;
    BrowsTreeController *m_browsTreeController = nullptr;
    TagsController *m_tagsController = nullptr;
    GroupsController *m_groupsController = nullptr;
    MainViewController *m_mainViewController = nullptr;
    RelationsController *m_relationsController = nullptr;
    UndoHistory *m_history = nullptr;
    CollectionSettings *m_settings;
    UserPrompts *m_prompts;
};

/** A collection of the kind, without a parent and not open yet; null for an unknown kind. */
Collection *makeCollection(int type, const QString &host, const QString &databaseName, const QString &user,
                           const QString &password, int port);

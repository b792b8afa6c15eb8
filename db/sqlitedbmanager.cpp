#include "db/sqlitedbmanager.h"

#include "app/constants.h"
#include "app/messages.h"
#include "core/providers/groupsprovider.h"
#include "core/providers/mainviewprovider.h"
#include "core/providers/relationtreeprovider.h"
#include "core/providers/sqlitebrowstreeprovider.h"
#include "core/providers/sqlitegeneralprovider.h"
#include "core/providers/tagsprovider.h"
#include "db/connections.h"
#include "db/schema.h"
#include "db/sqlitequeryconstructor.h"
#include "db/transaction.h"
#include "fileops/sqlitefileoperationprovider.h"

#include <QDir>
#include <QFileInfo>

namespace {
// Large blocks of file contents are stored at half the price of the default page size.
const QString pageSizeStatement = QStringLiteral("PRAGMA page_size=65536;");

// How long the window waits for the worker's transaction before it asks to try again.
const QString shortBusyTimeout = QStringLiteral("QSQLITE_BUSY_TIMEOUT=250");
} // namespace

SQLiteDBManager::SQLiteDBManager(const QString &driver, const QString &database, const QString &host,
                                 const QString &user, const QString &password, int port, QObject *parent)
    : DatabaseManger(driver, database, host, user, password, port, parent),
      m_folderWatcher(new QFileSystemWatcher(this))
{
    setConstructor(std::make_unique<SqliteQueryConstructor>());
    Providers made;
    made.browsTree = new SqliteBrowsTreeProvider(constructor(), this);
    made.tags = new TagsProvider(constructor(), this);
    made.groups = new GroupsProvider(constructor(), this);
    made.general = new SqliteGeneralProvider(constructor(), this);
    made.mainView = new MainViewProvider(constructor(), this);
    made.relationTree = new RelationTreeProvider(constructor(), this);
    made.fileOperation = new SqliteFileOperationProvider(constructor(), details(), this);
    setProviders(made);
    connect(m_folderWatcher, &QFileSystemWatcher::directoryChanged, this,
            &SQLiteDBManager::folderContentChanged);
}

SQLiteDBManager::~SQLiteDBManager()
{
    disconnect(m_folderWatcher, &QFileSystemWatcher::directoryChanged, this,
               &SQLiteDBManager::folderContentChanged);
}

QSqlError SQLiteDBManager::openDB()
{
    // SQLite would make an empty file where none is.
    if (!Connections::isDatabaseThere(details()))
        return {QString(), tr("The database file does not exist."), QSqlError::ConnectionError};
    QSqlError error = DatabaseManger::openDB();
    m_closing = false;
    return error;
}

void SQLiteDBManager::closeDB()
{
    m_closing = true;
    DatabaseManger::closeDB();
}

int SQLiteDBManager::dbType() const
{
    return Constants::localDatabase;
}

bool SQLiteDBManager::createDatabase()
{
    const QString name = Constants::temporaryConnection;
    if (!Connections::open(name, details()).isOpen)
        return false;
    const bool created = makeTables(name);
    Connections::close(name);
    return created;
}

bool SQLiteDBManager::makeTables(const QString &connectionName)
{
    GeneralProvider *general = providers().general;
    if (!general || !general->runStatements({pageSizeStatement}, connectionName))
        return false;
    // One write to the disk instead of one a table.
    Transaction transaction(*general, connectionName);
    return transaction.isActive() && general->runStatements(Schema::creationStatements(), connectionName) &&
           transaction.commit();
}

QString SQLiteDBManager::connectOptions() const
{
    return shortBusyTimeout;
}

void SQLiteDBManager::readReadOnlyState()
{
    DatabaseManger::readReadOnlyState();
    if (isReadOnly())
        return;
    const QFileInfo file(databaseName());
    if (!file.isReadable())
        Messages::critical(nullptr, tr("Database Permissions"),
                           tr("This database is not readable by this user."));
    setReadOnly(!file.isWritable());
}

qint64 SQLiteDBManager::currentBrowsingTree() const
{
    return 0;
}

void SQLiteDBManager::setCurrentBrowsingTree(qint64 treeId)
{
    if (providers().browsTree)
        providers().browsTree->setCurrentTree(treeId);
    if (providers().fileOperation)
        providers().fileOperation->setBrowsingTreeId(treeId);
}

bool SQLiteDBManager::isDataCurrent()
{
    return true;
}

void SQLiteDBManager::refreshModificationDate() {}

void SQLiteDBManager::folderContentChanged(const QString &path)
{
    if (m_closing)
        return;
    const QString folder = QDir::fromNativeSeparators(path);
    for (const AutoLink *link : qAsConst(autoLinks())) {
        if (link->absPath() == folder)
            return;
    }
    m_folderWatcher->removePath(path);
}

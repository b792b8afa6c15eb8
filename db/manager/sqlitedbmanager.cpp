#include "db/manager/sqlitedbmanager.h"

#include "app/settings/constants.h"
#include "core/prompts/userprompts.h"
#include "core/providers/groupsprovider.h"
#include "core/providers/mainviewprovider.h"
#include "core/providers/relationtreeprovider.h"
#include "core/providers/sqlitebrowstreeprovider.h"
#include "core/providers/sqlitegeneralprovider.h"
#include "core/providers/tagsprovider.h"
#include "core/records/file.h"
#include "db/sql/connections.h"
#include "db/sql/foreignwrites.h"
#include "db/sql/lockwait.h"
#include "db/sql/readbound.h"
#include "db/sql/schema.h"
#include "db/sql/sqlitequeryconstructor.h"
#include "db/sql/transaction.h"
#include "fileops/provider/sqlitefileoperationprovider.h"

#include <QElapsedTimer>
#include <QFileInfo>
#include <QSqlDatabase>

namespace {
// Large contents want large pages, and rows at random places of an index small ones.
const QString pageSizeStatement = QStringLiteral("PRAGMA page_size=16384;");

// How long the window waits for the worker's transaction before it asks to try again.
const QString shortBusyTimeout = QStringLiteral("QSQLITE_BUSY_TIMEOUT=250");

// What nobody asked for holds the window for less than anybody notices.
constexpr int mendingMilliseconds = 30;

// How long it waits at the opening until it can be told whether the database may be written.
constexpr int mostProbingMilliseconds = 1500;
} // namespace

SQLiteDBManager::SQLiteDBManager(const QString &driver, const QString &database, const QString &host,
                                 const QString &user, const QString &password, int port, QObject *parent)
    : DatabaseManger(driver, database, host, user, password, port, parent),
      m_foreignWrites(new ForeignWrites(this)),
      m_linkedFolders(*this, autoLinks(), this),
      m_relinker(new PathRelinker(*this, this))
{
    setConstructor(std::make_unique<SqliteQueryConstructor>());
    Providers made;
    made.browsTree = new SqliteBrowsTreeProvider(constructor(), this);
    made.tags = new TagsProvider(constructor(), this);
    made.groups = new GroupsProvider(constructor(), this);
    made.general = new SqliteGeneralProvider(constructor(), this);
    made.mainView = new MainViewProvider(constructor(), this);
    made.relationTree = new RelationTreeProvider(constructor(), this);
    auto *fileOperation = new SqliteFileOperationProvider(constructor(), details(), this);
    fileOperation->setForeignWrites(m_foreignWrites);
    made.fileOperation = fileOperation;
    setWriteGuard(m_foreignWrites);
    setProviders(made);
    connectErrors(m_foreignWrites);
    connect(m_foreignWrites, &ForeignWrites::newsFound, this, [this] {
        // No user waits for what is mended unasked.
        if (m_isMending)
            reloadLater();
        else
            dropEdit();
    });
    connect(m_foreignWrites, &ForeignWrites::outdated, this, &SQLiteDBManager::reloadLater);
    connect(m_foreignWrites, &ForeignWrites::busyFound, this, &SQLiteDBManager::tellBusy);
    connectAutoLinks();
}

SQLiteDBManager::~SQLiteDBManager()
{
    m_linkedFolders.end();
    m_foreignWrites->clearPrepared();
}

void SQLiteDBManager::connectAutoLinks()
{
    m_linkedFolders.setProviders(providers().browsTree, providers().general);
    connect(this, &DatabaseManger::browsingNodeLoaded, &m_linkedFolders, &AutoLinks::load);
    connect(providers().browsTree, &BrowsTreeProvider::gotAllAutolinksInfo, this, [this](bool ok) {
        // An edit of nodes would leave links behind that it does not know.
        if (!ok)
            loadState().note(LoadState::Nodes, false);
    });
    connect(providers().fileOperation, &FileOperationProvider::autoLinked, &m_linkedFolders,
            &AutoLinks::takeOutcome);
}

QSqlError SQLiteDBManager::openDB()
{
    // SQLite would make an empty file where none is.
    if (!Connections::isDatabaseThere(details()))
        return {QString(), tr("The database file does not exist."), QSqlError::ConnectionError};
    QSqlError error = DatabaseManger::openDB();
    // What others change from here on is either in the first load or news for the first edit.
    if (error.type() == QSqlError::NoError)
        m_foreignWrites->noteState();
    m_closing = false;
    return error;
}

void SQLiteDBManager::closeDB()
{
    m_relinker->stop();
    m_readBound.reset();
    m_closing = true;
    m_linkedFolders.end();
    m_foreignWrites->clearPrepared();
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
    const QStringList statements = Schema::creationStatements()
                                   << Schema::applicationIdStatement(Schema::databaseApplicationId);
    return transaction.isActive() && general->runStatements(statements, connectionName) &&
           transaction.commit();
}

QString SQLiteDBManager::connectOptions() const
{
    return shortBusyTimeout;
}

void SQLiteDBManager::readReadOnlyState()
{
    QElapsedTimer waited;
    waited.start();
    // Others write for a moment, as a rule.
    do {
        DatabaseManger::readReadOnlyState();
    } while (providers().general->isInUse() && !waited.hasExpired(mostProbingMilliseconds));
    if (isReadOnly())
        return;
    const QFileInfo file(databaseName());
    if (!file.isReadable())
        prompts().tell(UserPrompts::Critical, tr("Database Permissions"),
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
    return isReadyForEdits() && m_foreignWrites->mayWrite();
}

bool SQLiteDBManager::beginReading()
{
    GeneralProvider *general = providers().general;
    if (!general->runSync(QStringLiteral("BEGIN;")))
        return false;
    if (m_foreignWrites->noteState()) {
        m_readBound = std::make_unique<ReadBound>(QSqlDatabase::database(Connections::mainName(), false));
        return true;
    }
    general->rollbackTransaction();
    return false;
}

void SQLiteDBManager::endReading()
{
    m_readBound.reset();
    // Nothing was written: it only lets go.
    providers().general->commitTransaction();
}

bool SQLiteDBManager::beginEdit(const EditBase &)
{
    // The write guard is asked behind the lock.
    if (!isReadyForEdits() || !providers().general->beginTransaction())
        return false;
    m_isInEdit = true;
    const QVector<BaseDBProvider *> joining = editors();
    for (BaseDBProvider *provider : joining)
        provider->joinTransaction();
    return true;
}

DatabaseManger::EditEnd SQLiteDBManager::endEdit(bool isDone)
{
    m_isInEdit = false;
    const bool isCommitted = isDone && providers().general->commitTransaction();
    if (!isCommitted)
        providers().general->rollbackTransaction();
    const QVector<BaseDBProvider *> leaving = editors();
    for (BaseDBProvider *provider : leaving)
        provider->leaveTransaction(isCommitted);
    return isCommitted ? Ended : Failed;
}

void SQLiteDBManager::include(BaseDBProvider *provider)
{
    DatabaseManger::include(provider);
    if (m_isInEdit)
        provider->joinTransaction();
}

void SQLiteDBManager::refreshModificationDate() {}

bool SQLiteDBManager::endChecks()
{
    const bool wasRelinking = m_relinker->isRunning();
    m_relinker->stop();
    return DatabaseManger::endChecks() || wasRelinking;
}

void SQLiteDBManager::relinkPaths(const QVector<qint64> &fileIds)
{
    m_relinker->start(databaseName(), fileIds);
}

bool SQLiteDBManager::refreshFilePaths(qint64 fileId)
{
    return m_relinker->relinkNow(databaseName(), fileId);
}

PathRelinkerHost::Writing SQLiteDBManager::writePaths(const PathChanges &changes)
{
    if (isReadOnly()) {
        showPaths(changes);
        return Written;
    }
    if (!loadState().isWhole() || loadState().isLoading() || isReloadDue())
        return NotWritten;
    // Nobody asked for it: neither the window nor the user waits.
    if (m_foreignWrites->isWorkerCommitting())
        return Busy;
    const LockWait noWait([] { return true; }, mendingMilliseconds);
    m_isMending = true;
    bool isWritten = false;
    const bool metLock = runInSilence([&] { isWritten = providers().mainView->changePaths(changes); });
    m_isMending = false;
    return isWritten ? Written : metLock ? Busy : NotWritten;
}

void SQLiteDBManager::showPaths(const PathChanges &changes)
{
    QVector<qint64> changed;
    for (const PathChange &change : changes) {
        if (File *record = file(change.fileId)) {
            record->setData(change.column == QLatin1String("path") ? Path : RelPath, change.value);
            changed.append(change.fileId);
        }
    }
    emit filesChanged(changed);
}

void SQLiteDBManager::createAutoLink(const QString &folder, qint64 nodeId)
{
    m_linkedFolders.createAutoLink(folder, nodeId);
}

QString SQLiteDBManager::autoLinkRelativePath(const QString &linkId) const
{
    return m_linkedFolders.autoLinkRelativePath(linkId);
}

QString SQLiteDBManager::autoLinkAbsolutePath(const QString &linkId) const
{
    return m_linkedFolders.autoLinkAbsolutePath(linkId);
}

void SQLiteDBManager::removeAutoLink(const QString &linkId, qint64 nodeId)
{
    m_linkedFolders.removeAutoLink(linkId, nodeId);
}

void SQLiteDBManager::refreshAutoLinks()
{
    m_linkedFolders.refreshAutoLinks();
}

void SQLiteDBManager::runAllAutoLinks(bool force)
{
    m_linkedFolders.runAllAutoLinks(force);
}

void SQLiteDBManager::runAutoLinkOfNode(qint64 nodeId)
{
    m_linkedFolders.runAutoLinkOfNode(nodeId);
}

void SQLiteDBManager::syncAutoLink(const QString &linkId, qint64 nodeId, bool notifyDuplicates)
{
    m_linkedFolders.syncAutoLink(linkId, nodeId, notifyDuplicates);
}

void SQLiteDBManager::readSettings()
{
    DatabaseManger::readSettings();
    m_linkedFolders.watchFolders();
}

void SQLiteDBManager::tellError(const QString &title, const QString &text)
{
    emit error(title, text);
}

void SQLiteDBManager::warn(const QString &text)
{
    emit showTempWarning(tr("Warning"), text);
}

bool SQLiteDBManager::autoLinkFiles(const QStringList &paths, const QVector<qint64> &tagIds,
                                    bool notifyDuplicates, qint64 requestId)
{
    if (!providers().fileOperation || !mayRequest({}))
        return false;
    providers().fileOperation->autoLinkFiles(paths, tagIds, notifyDuplicates, requestId);
    return true;
}

void SQLiteDBManager::checkExternalFiles(const QVector<qint64> &fileIds)
{
    if (providers().fileOperation)
        providers().fileOperation->checkExternalFiles(fileIds, false);
}

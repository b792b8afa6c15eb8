#include "db/manager/databasemanger.h"

#include "app/settings/constants.h"
#include "core/prompts/userprompts.h"
#include "core/providers/browstreeprovider.h"
#include "core/providers/generalprovider.h"
#include "core/providers/groupsprovider.h"
#include "core/providers/mainviewprovider.h"
#include "core/providers/relationtreeprovider.h"
#include "core/providers/tagsprovider.h"
#include "db/manager/closeddatabase.h"
#include "db/manager/databaseversioncheck.h"
#include "db/manager/pendingreloads.h"
#include "db/sql/abstractqueryconstructor.h"
#include "db/sql/connections.h"
#include "db/sql/databaselock.h"
#include "db/sql/errorjudge.h"
#include "db/sql/longtext.h"
#include "db/sql/readbound.h"
#include "fileops/contents/imagestore.h"
#include "fileops/provider/fileoperationprovider.h"
#include "fileops/provider/thumbnailcache.h"

#include <QDebug>
#include <QTimer>

#include <utility>

namespace {
/** Two sentences in one line; either may be missing. */
QString joined(const QString &first, const QString &second)
{
    return second.isEmpty() ? first : first + QLatin1Char(' ') + second;
}
} // namespace

DatabaseManger::DatabaseManger(const QString &driver, const QString &database, const QString &host,
                               const QString &user, const QString &password, int port, QObject *parent)
    : QObject(parent),
      m_driverName(driver),
      m_hostName(host),
      m_port(port),
      m_databaseName(database),
      m_userName(user),
      m_password(password),
      m_fileEdits(*this),
      m_edits(*this, m_records),
      m_thumbnailCache(new ThumbnailCache(this)),
      m_pendingReloads(new PendingReloads(this)),
      m_prompts(&UserPrompts::nobody())
{
    connectRecords();
    connect(m_thumbnailCache, &ThumbnailCache::imageLoaded, this, &DatabaseManger::thumbnailUpdated);
    connect(m_pendingReloads, &PendingReloads::due, this, &DatabaseManger::retryReload);
}

DatabaseManger::~DatabaseManger()
{
    DatabaseManger::closeDB();
    // Providers borrow the query constructor, so they go before it; the caches go last, as members.
    delete m_providers.relationTree;
    delete m_providers.mainView;
    delete m_providers.general;
    delete m_providers.groups;
    delete m_providers.tags;
    delete m_providers.browsTree;
    m_images.reset();
    delete m_thumbnailCache;
    m_constructor.reset();
    qDeleteAll(m_autoLinks.items());
}

bool DatabaseManger::checkDatabaseVersion(const QString &driver, const QString &database, const QString &host,
                                          const QString &user, const QString &password, int port,
                                          UserPrompts &prompts)
{
    return DatabaseVersionCheck({Connections::typeOf(driver), host, port, database, user, password}, prompts)
        .run();
}

QStringList DatabaseManger::tagNames(const DBDetails &details)
{
    return ClosedDatabase(details).tagNames();
}

void DatabaseManger::setConstructor(std::unique_ptr<AbstractQueryConstructor> constructor)
{
    m_constructor = std::move(constructor);
}

void DatabaseManger::setProviders(const Providers &providers)
{
    m_providers = providers;
    m_thumbnailCache->setProvider(m_providers.fileOperation);
    m_fileEdits.setProviders(m_providers.mainView, m_providers.fileOperation);
    m_edits.setProviders(m_providers, constructor());
    m_records.follow(m_providers);
    connect(m_providers.mainView, &MainViewProvider::loadingProgress, this, &DatabaseManger::loadingProgress);
    for (BaseDBProvider *provider :
         std::initializer_list<BaseDBProvider *>{m_providers.tags, m_providers.groups, m_providers.browsTree,
                                                 m_providers.mainView, m_providers.relationTree})
        connectErrors(provider);
    connectFileOperations();
    connectFileNews();
    m_images = std::make_unique<ImageStore>(constructor());
    connectErrors(m_images.get());
    connect(m_providers.general, &GeneralProvider::gotDBVerion, this, &DatabaseManger::loadedDBVerion);
    connect(m_providers.general, &GeneralProvider::gotDBReadonly, this, &DatabaseManger::setReadOnly);
    connectErrors(m_providers.general);
}

void DatabaseManger::connectRecords()
{
    using Keeper = RecordKeeper;
    using Manager = DatabaseManger;
    connect(&m_records, &Keeper::tagsLoaded, this, &Manager::tagsLoaded);
    connect(&m_records, &Keeper::tagsAdded, this, &Manager::tagsAdded);
    connect(&m_records, &Keeper::tagsRemoved, this, &Manager::tagsRemoved);
    connect(&m_records, &Keeper::aboutToRenameTags, this, &Manager::aboutToRenameTags);
    connect(&m_records, &Keeper::tagsRenamed, this, &Manager::tagsRenamed);
    connect(&m_records, &Keeper::groupsLoaded, this, &Manager::groupsLoaded);
    connect(&m_records, &Keeper::aboutToUpdateGroups, this, &Manager::aboutToUpdateGroups);
    connect(&m_records, &Keeper::groupsUpdated, this, &Manager::groupsUpdated);
    connect(&m_records, &Keeper::browsingNodeLoaded, this, &Manager::browsingNodeLoaded);
    connect(&m_records, &Keeper::addedBrowsingNodes, this, &Manager::addedBrowsingNodes);
    connect(&m_records, &Keeper::aboutToRemoveNodes, this, &Manager::aboutToRemoveNodes);
    connect(&m_records, &Keeper::removedNodes, this, &Manager::removedNodes);
    connect(&m_records, &Keeper::filesLoaded, this, &Manager::filesLoaded);
    connect(&m_records, &Keeper::filesAdded, this, &Manager::filesAdded);
    connect(&m_records, &Keeper::filesChanged, this, &Manager::filesChanged);
    connect(&m_records, &Keeper::filesRemoved, this, &Manager::filesRemoved);
    connect(&m_records, &Keeper::updateMissedFiles, this, &Manager::updateMissedFiles);
    connect(&m_records, &Keeper::relatshipsNodeLoaded, this, &Manager::relatshipsNodeLoaded);
    connect(&m_records, &Keeper::addedRelatshipsNodes, this, &Manager::addedRelatshipsNodes);
}

void DatabaseManger::connectFileOperations()
{
    using Source = FileOperationProvider;
    Source *files = m_providers.fileOperation;
    connect(files, &Source::aboutToCommit, this, &DatabaseManger::aboutToCommit);
    connect(files, &Source::committed, this, &DatabaseManger::noteChange);
    connect(files, &Source::updateTags, this, [this](const QVector<qint64> &ids) {
        updateTags(ids);
        refreshModificationDate();
    });
    connect(files, &Source::updateNodes, this, [this](const QVector<qint64> &ids) {
        reloadNodes(ids);
        refreshModificationDate();
    });
    connect(files, &Source::updatedFiles, this, [this](const QVector<qint64> &ids) {
        reloadFiles(ids);
        reloadThumbnails(ids);
        refreshModificationDate();
    });
    connect(files, &Source::filesRemoved, this, [this](const QVector<qint64> &ids) {
        m_thumbnailCache->remove(ids);
        m_records.gotFilesRemoved(ids);
        refreshModificationDate();
    });
    connect(files, &Source::filesImported, this, &DatabaseManger::reloadAllData);
    connect(files, &Source::noLongerPresent, &m_records, &RecordKeeper::gotMissedFileIds);
    connect(files, &Source::present, &m_records, &RecordKeeper::gotFoundFileIds);
    connect(files, &Source::fellShort, this, &DatabaseManger::gotShortfall);
    connectErrors(files);
}

void DatabaseManger::connectFileNews()
{
    using Source = FileOperationProvider;
    Source *files = m_providers.fileOperation;
    connect(files, &Source::startedFilesOperation, this, &DatabaseManger::startedAddingFiles);
    connect(files, &Source::filesOperationProgress, this, &DatabaseManger::addingFilesProgress);
    connect(files, &Source::finishedFilesOperation, this, &DatabaseManger::finishedAddingFiles);
    connect(files, &Source::duplicatesReady, this, &DatabaseManger::duplicatesReady);
    connect(files, &Source::hyperlinksSettled, this, &DatabaseManger::hyperlinksSettled);
    connect(files, &Source::filesModified, this, &DatabaseManger::filesModified);
    connect(files, &Source::extractedTempFiles, this, &DatabaseManger::extractedTempFiles);
    connect(files, &Source::importNotification, this, &DatabaseManger::importNotification);
    connect(files, &Source::thumbnailsFailed, this, &DatabaseManger::gotThumbnailFailure);
    connect(files, &Source::remadeAllThumbnails, this, [this] {
        m_thumbnailCache->clearCache();
        refreshModificationDate();
        emit remadeAllThumbnails();
    });
    // The worker says text and title, everybody above the manager title and text.
    connect(files, &Source::error, this,
            [this](const QString &text, const QString &title) { emit error(title, text); });
}

void DatabaseManger::connectErrors(BaseDBProvider *provider)
{
    connect(provider, &BaseDBProvider::connectionError, this, &DatabaseManger::gotConnectionLoss);
    connect(provider, &BaseDBProvider::errorOccured, this, &DatabaseManger::gotProviderError);
    provider->setWriteGuard(m_writeGuard);
}

void DatabaseManger::gotConnectionLoss()
{
    if (!std::exchange(m_isLost, true))
        emit connectionError();
}

void DatabaseManger::gotProviderError(const QSqlError &error)
{
    const ErrorJudge judge(details());
    if (judge.isBusy(error))
        tellBusy();
    else
        emit errorOccured(judge.told(error));
}

void DatabaseManger::tellBusy()
{
    m_sawBusy = true;
    if (!m_isReloading)
        warnOfBusyDatabase();
}

void DatabaseManger::gotShortfall(const OperationShortfall &shortfall)
{
    const ErrorJudge judge(details());
    bool isBusy = false;
    bool isTold = false;
    for (const QSqlError &error : shortfall.errors) {
        if (judge.isBusy(error)) {
            isBusy = true;
            continue;
        }
        emit operationFailed(judge.told(error), isTold ? QString() : shortfall.outcome);
        isTold = true;
    }
    if (isTold)
        return;
    if (isBusy)
        warnOfBusyDatabase(shortfall.outcome);
    else
        emit showTempWarning(tr("Canceled"), shortfall.outcome);
}

void DatabaseManger::warnOfBusyDatabase(const QString &outcome)
{
    emit showTempWarning(tr("Warning"), joined(tr("The database is busy. Please try again."), outcome));
}

void DatabaseManger::gotThumbnailFailure(const QVector<qint64> &fileIds, const QSqlError &error)
{
    const ErrorJudge judge(details());
    if (judge.isBusy(error))
        m_pendingReloads->add(PendingReloads::ThumbnailReload, fileIds);
    else if (!m_isLost && !std::exchange(m_toldThumbnailFailure, true))
        emit errorOccured(judge.told(error)); // once: each box that closes uncovers them, to be painted again
}

QSqlError DatabaseManger::openDB()
{
    m_isLost = false;
    m_toldThumbnailFailure = false;
    const Connections::Result main = Connections::open(Connections::mainName(), details(), connectOptions());
    if (!main.isDriverLoaded) {
        qDebug() << "DBManager::openDB 1:" << main.error;
        return main.error;
    }
    if (!main.isOpen) {
        qDebug() << "DBManager::openDB 0:" << main.error;
        return main.error;
    }
    m_isOpen = true;
    // A connection serves the thread that opened it: the worker opens its own, this one only tells that it
    // can.
    const Connections::Result worker = Connections::open(Constants::workerConnection, details());
    Connections::close(Constants::workerConnection);
    if (worker.isDriverLoaded && !worker.isOpen) {
        qDebug() << "DBManager::openDB error open async connection:" << worker.error;
        return worker.error;
    }
    const ReadBound bound(QSqlDatabase::database(Connections::mainName(), false));
    readReadOnlyState();
    if (m_providers.general && m_providers.general->isInUse())
        return {QString(), DatabaseLock::inUseText(), QSqlError::ConnectionError,
                m_providers.general->lastError().nativeErrorCode()};
    loadDBVersion();
    return {};
}

void DatabaseManger::closeDB()
{
    // Waits for the worker, which uses the database until then. No request may come after it.
    delete m_providers.fileOperation;
    m_providers.fileOperation = nullptr;
    m_fileEdits.setProviders(m_providers.mainView, nullptr);
    m_pendingReloads->clear();
    // A manager that never opened must not close what another one uses under the same names.
    if (m_isOpen) {
        Connections::close(Constants::workerConnection);
        Connections::close(Connections::mainName());
    }
    m_isOpen = false;
}

DBDetails DatabaseManger::details() const
{
    return {Connections::typeOf(m_driverName), m_hostName, m_port, m_databaseName, m_userName, m_password};
}

void DatabaseManger::readReadOnlyState()
{
    if (m_providers.general)
        m_providers.general->probeReadOnly();
}

void DatabaseManger::loadDBVersion()
{
    if (m_providers.general)
        m_providers.general->loadVersion();
}

void DatabaseManger::loadedDBVerion(bool ok, const TableData &rows)
{
    if (ok && !rows.isEmpty() && rows.first())
        m_dbVersion = rows.first()->value(QStringLiteral("version")).toString();
    qDeleteAll(rows);
}

bool DatabaseManger::beginReading()
{
    // Without its server every load would fail and leave the views empty.
    loadDBVersion();
    if (m_sawBusy || (m_providers.general && m_providers.general->isConnectionLost()))
        return false;
    aboutToLoad();
    return true;
}

bool DatabaseManger::beginLoad()
{
    m_sawBusy = false;
    m_isReloading = true;
    m_isReloading = beginReading();
    if (m_isReloading)
        m_records.loadState().begin();
    else
        m_records.loadState().fail();
    return m_isReloading;
}

bool DatabaseManger::endLoad()
{
    endReading();
    m_records.loadState().end();
    m_isReloading = false;
    return m_records.loadState().isWhole();
}

void DatabaseManger::reloadAllData()
{
    if (beginLoad()) {
        emit aboutToReloadAllData();
        m_thumbnailCache->clearCache();
        loadBrowsingTrees();
        setCurrentBrowsingTree(currentBrowsingTree());
        loadAllFiles();
        loadAllNodes();
        loadAllTags();
        loadAllGroups();
        loadAllRelationNodes();
        endLoad();
        emit allDataReloaded();
    }
    // What could not be read is missing now, or is still as it was.
    if (m_sawBusy)
        m_pendingReloads->add(PendingReloads::FullReload, {0});
}

bool DatabaseManger::isReadyForEdits()
{
    // A dialog that keeps the database from being closed may be tried once more.
    if (m_isLost) {
        emit showTempWarning(tr("Warning"), tr("The connection to the database is lost."));
        return false;
    }
    // The rest of an edit of several steps goes with its first one.
    if (m_isReloadDue || m_records.loadState().isLoading())
        return false;
    if (m_records.loadState().isWhole())
        return true;
    if (m_pendingReloads->isWaiting())
        tellBusy();
    else
        emit showTempWarning(tr("Warning"),
                             tr("The database could not be read completely, so it cannot be changed."));
    return false;
}

void DatabaseManger::dropEdit()
{
    if (!m_isReloadDue)
        emit showTempWarning(tr("Warning"), tr("Local data is updating."));
    reloadLater();
}

void DatabaseManger::reloadLater()
{
    if (std::exchange(m_isReloadDue, true))
        return;
    // Callers of an edit may hold records still.
    QTimer::singleShot(0, this, [this] {
        m_isReloadDue = false;
        reloadAllData();
    });
}

void DatabaseManger::loadOrKeep(int kind, const QVector<qint64> &ids, const std::function<void()> &load)
{
    m_sawBusy = false;
    m_isReloading = true;
    load();
    m_isReloading = false;
    if (m_sawBusy)
        m_pendingReloads->add(kind, ids);
}

void DatabaseManger::retryReload(int kind, const QVector<qint64> &ids)
{
    switch (kind) {
    case PendingReloads::TagReload:
        updateTags(ids);
        break;
    case PendingReloads::GroupReload:
        loadOrKeep(kind, ids, [this, &ids] { m_providers.groups->loadGroups(ids); });
        break;
    case PendingReloads::NodeReload:
        reloadNodes(ids);
        break;
    case PendingReloads::FileReload:
        reloadFiles(ids);
        break;
    case PendingReloads::FullReload:
        reloadAllData();
        break;
    case PendingReloads::ThumbnailReload:
        for (const qint64 id : ids)
            emit thumbnailUpdated(id, nullptr);
        break;
    default:
        break;
    }
}

bool DatabaseManger::isNameGiven(const QString &name)
{
    const bool isGiven = !name.trimmed().isEmpty();
    if (!isGiven)
        emit error(tr("Name Missing"), tr("A name must not be empty."));
    return isGiven;
}

void DatabaseManger::loadAllTags()
{
    if (m_providers.tags)
        m_providers.tags->loadAllTags();
}

QVector<qint64> DatabaseManger::runEdit(int reload, const std::function<QVector<qint64>()> &edit)
{
    m_sawBusy = false;
    m_isReloading = true;
    const QVector<qint64> ids = edit();
    m_isReloading = false;
    // Another connection may have taken the database between the edit and the reading of what it made.
    if (m_sawBusy && ids.isEmpty())
        warnOfBusyDatabase();
    else if (m_sawBusy)
        m_pendingReloads->add(reload, ids);
    refreshModificationDate();
    return ids;
}

bool DatabaseManger::areTagsOnNodes(const QVector<qint64> &tagIds)
{
    bool isUsed = false;
    return !m_providers.tags || !m_providers.tags->readUseOnNodes(tagIds, isUsed) || isUsed;
}

void DatabaseManger::updateTags(const QVector<qint64> &tagIds)
{
    if (m_providers.tags)
        loadOrKeep(PendingReloads::TagReload, tagIds,
                   [this, &tagIds] { m_providers.tags->loadTags(tagIds); });
}

void DatabaseManger::loadAllGroups()
{
    if (m_providers.groups)
        m_providers.groups->loadAllGroups();
}

void DatabaseManger::loadAllNodes()
{
    if (m_providers.browsTree)
        m_providers.browsTree->loadAllNodes();
}

void DatabaseManger::reloadNodes(const QVector<qint64> &nodeIds)
{
    if (m_providers.browsTree)
        loadOrKeep(PendingReloads::NodeReload, nodeIds,
                   [this, &nodeIds] { m_providers.browsTree->loadNodes(nodeIds); });
}

void DatabaseManger::loadBrowsingTrees()
{
    if (m_providers.browsTree)
        m_providers.browsTree->loadAllTrees();
}

void DatabaseManger::loadAllRelationNodes()
{
    if (m_providers.relationTree)
        m_providers.relationTree->loadAllNodes();
}

void DatabaseManger::loadAllFiles()
{
    if (!m_providers.mainView)
        return;
    m_records.dropFiles();
    m_providers.mainView->loadAllFiles();
}

void DatabaseManger::reloadFiles(const QVector<qint64> &fileIds)
{
    if (m_providers.mainView)
        loadOrKeep(PendingReloads::FileReload, fileIds,
                   [this, &fileIds] { m_providers.mainView->loadFiles(fileIds); });
}

bool DatabaseManger::isStorable(const QString &text)
{
    // It could not be read back whole.
    if (!LongText::isTooLong(text))
        return true;
    emit showTempWarning(
        tr("Warning"),
        tr("The text is longer than %1 characters and was not stored.").arg(LongText::mostCharacters));
    return false;
}

void DatabaseManger::runFileEdit(const std::function<QVector<qint64>()> &edit)
{
    runEdit(PendingReloads::FileReload, edit);
}

void DatabaseManger::reloadThumbnails(const QVector<qint64> &fileIds)
{
    m_thumbnailCache->reloadHeld(fileIds);
}

std::unique_ptr<ImageLoading> DatabaseManger::loadImage(qint64 fileId)
{
    if (!m_images)
        return std::make_unique<ImageLoading>(StoredImage::UnknownFile);
    m_sawBusy = false;
    m_isReloading = true;
    std::unique_ptr<ImageLoading> loading = m_images->load(fileId);
    m_isReloading = false;
    if (m_images->isConnectionLost())
        return std::make_unique<ImageLoading>(StoredImage::Unreachable);
    return m_sawBusy ? std::make_unique<ImageLoading>(StoredImage::Busy) : std::move(loading);
}

StoredImage::Saving DatabaseManger::saveImage(qint64 fileId, const QImage &picture)
{
    if (!m_images || !isDataCurrent())
        return StoredImage::Refused;
    m_sawBusy = false;
    m_images->forgetLastError();
    QVector<qint64> changedIds;
    StoredImage::Saving saving = StoredImage::Saved;
    if (!m_images->save(fileId, picture, changedIds)) {
        const bool isTold =
            m_sawBusy || m_isReloadDue || m_images->lastError().isValid() || m_images->isConnectionLost();
        saving = isTold ? StoredImage::Refused : StoredImage::NotSaved;
    }
    if (!changedIds.isEmpty()) {
        reloadFiles(changedIds);
        reloadThumbnails(changedIds);
    }
    refreshModificationDate();
    return saving;
}

void DatabaseManger::cancelOperations()
{
    if (m_providers.fileOperation)
        m_providers.fileOperation->cancelOperations();
}

bool DatabaseManger::isBusy() const
{
    return m_providers.fileOperation && m_providers.fileOperation->isBusy();
}

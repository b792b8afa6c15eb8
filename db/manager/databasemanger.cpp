#include "db/manager/databasemanger.h"

#include "app/settings/constants.h"
#include "app/settings/showntext.h"
#include "core/prompts/userprompts.h"
#include "core/providers/browstreeprovider.h"
#include "core/providers/generalprovider.h"
#include "core/providers/groupsprovider.h"
#include "core/providers/mainviewprovider.h"
#include "core/providers/relationtreeprovider.h"
#include "core/providers/tagsprovider.h"
#include "db/manager/closeddatabase.h"
#include "db/manager/databaseversioncheck.h"
#include "db/manager/exporttarget.h"
#include "db/manager/pendingreloads.h"
#include "db/manager/storedpictures.h"
#include "db/sql/abstractqueryconstructor.h"
#include "db/sql/connections.h"
#include "db/sql/databaselock.h"
#include "db/sql/longtext.h"
#include "db/sql/readbound.h"
#include "fileops/provider/fileoperationprovider.h"
#include "fileops/provider/thumbnailcache.h"
#include "fileops/worker/exportrequest.h"

#include <QDebug>
#include <QLocale>
#include <QTimer>

#include <utility>

DatabaseManger::DatabaseManger(const QString &driver, const QString &database, const QString &host,
                               const QString &user, const QString &password, int port, QObject *parent)
    : QObject(parent),
      m_driverName(driver),
      m_hostName(host),
      m_port(port),
      m_databaseName(database),
      m_userName(user),
      m_password(password),
      m_errors(details()),
      m_loads(m_records, m_errors),
      m_reload(*this, m_records, m_loads, m_errors),
      m_tagMerges(m_records),
      m_runner(*this, m_errors, m_loads),
      m_fileEdits(*this),
      m_edits(*this, m_records),
      m_thumbnailCache(new ThumbnailCache(this)),
      m_replays(*this, m_records, *m_thumbnailCache),
      m_prompts(&UserPrompts::nobody())
{
    connectRecords();
    connectLoads();
    connect(m_thumbnailCache, &ThumbnailCache::imageLoaded, this, &DatabaseManger::thumbnailUpdated);
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
    m_pictures.reset();
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
    m_loads.setProviders(m_providers);
    m_records.follow(m_providers);
    connect(m_providers.mainView, &MainViewProvider::tagsChanged, &m_tagMerges, &TagMerges::add);
    connect(m_providers.mainView, &MainViewProvider::loadingProgress, this, &DatabaseManger::loadingProgress);
    auto *rows = new RowReader(constructor(), this);
    m_runner.setProviders(m_providers, rows);
    m_replays.setProviders(m_providers, constructor());
    const QVector<BaseDBProvider *> providersOfRecords = editors();
    for (BaseDBProvider *provider : providersOfRecords)
        connectErrors(provider);
    connectFileOperations();
    connectFileNews();
    m_pictures = std::make_unique<StoredPictures>(constructor(), m_errors);
    connectErrors(m_pictures->provider());
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
    connect(&m_records, &Keeper::tagsMerged, this, &Manager::tagsMerged);
    connect(&m_records, &Keeper::aboutToRenameTags, this, &Manager::aboutToRenameTags);
    connect(&m_records, &Keeper::tagsRenamed, this, &Manager::tagsRenamed);
    connect(&m_records, &Keeper::groupsLoaded, this, &Manager::groupsLoaded);
    connect(&m_records, &Keeper::aboutToUpdateGroups, this, &Manager::aboutToUpdateGroups);
    connect(&m_records, &Keeper::groupsUpdated, this, &Manager::groupsUpdated);
    connect(&m_records, &Keeper::browsingNodeLoaded, this, &Manager::browsingNodeLoaded);
    connect(&m_records, &Keeper::addedBrowsingNodes, this, &Manager::addedBrowsingNodes);
    connect(&m_records, &Keeper::aboutToRemoveNodes, this, &Manager::aboutToRemoveNodes);
    connect(&m_records, &Keeper::removedNodes, this, &Manager::removedNodes);
    connect(&m_records, &Keeper::filesRead, this, &Manager::filesArrived);
    connect(&m_records, &Keeper::filesLoaded, this, &Manager::filesLoaded);
    connect(&m_records, &Keeper::filesAdded, this, &Manager::filesAdded);
    connect(&m_records, &Keeper::filesChanged, this, &Manager::filesChanged);
    connect(&m_records, &Keeper::filesRemoved, this, &Manager::filesRemoved);
    connect(&m_records, &Keeper::fileTagsChanged, this, &Manager::fileTagsChanged);
    connect(&m_records, &Keeper::fileTagsSettled, this, &Manager::fileTagsSettled);
    connect(&m_records, &Keeper::updateMissedFiles, this, &Manager::updateMissedFiles);
    connect(&m_records, &Keeper::relatshipsNodeLoaded, this, &Manager::relatshipsNodeLoaded);
    connect(&m_records, &Keeper::addedRelatshipsNodes, this, &Manager::addedRelatshipsNodes);
}

void DatabaseManger::connectLoads()
{
    connect(&m_errors, &ErrorTeller::connectionError, this, &DatabaseManger::connectionError);
    connect(&m_errors, &ErrorTeller::errorOccured, this, &DatabaseManger::errorOccured);
    connect(&m_errors, &ErrorTeller::operationFailed, this, &DatabaseManger::operationFailed);
    connect(&m_errors, &ErrorTeller::showTempWarning, this, &DatabaseManger::showTempWarning);
    connect(&m_errors, &ErrorTeller::thumbnailsBusy, &m_loads,
            [this](const QVector<qint64> &ids) { m_loads.keep(PendingReloads::ThumbnailReload, ids); });
    connect(&m_loads, &RecordLoads::progress, this, &DatabaseManger::loadingProgress);
    connect(&m_loads, &RecordLoads::filesRead, this, &DatabaseManger::filesRead);
    connect(&m_loads, &RecordLoads::filesRead, &m_reload, &WholeReload::goOn);
    connect(&m_loads, &RecordLoads::fullReloadDue, &m_reload, &WholeReload::run);
    connect(&m_reload, &WholeReload::aboutToReload, this, [this] {
        m_tagMerges.clear();
        m_replays.clear();
        emit aboutToReloadAllData();
        m_thumbnailCache->clearCache();
    });
    connect(&m_reload, &WholeReload::reloaded, this, &DatabaseManger::allDataReloaded);
    connect(&m_loads, &RecordLoads::thumbnailDue, this,
            [this](qlonglong fileId) { emit thumbnailUpdated(fileId, nullptr); });
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
    connect(files, &Source::tagsChanged, &m_tagMerges, &TagMerges::add);
    connect(files, &Source::tagsChanged, this, &DatabaseManger::refreshModificationDate);
    connect(files, &Source::tagsChanged, this, &DatabaseManger::filesRetagged);
    const auto tell = [this](const std::function<void(EditNotes)> &note) {
        EditRecord record;
        note({record, m_records});
        emit aboutToEdit();
        emit edited(record.take());
    };
    connect(files, &Source::tagsChanged, this,
            [tell](const TagChanges &done) { tell([&](EditNotes notes) { notes.linksDone(done); }); });
    connect(files, &Source::added, this, [this, tell](const AdditionOutcome &outcome) {
        tell([&](EditNotes notes) { notes.filesAdded(outcome); });
        if (!outcome.nodes.isEmpty())
            emit nodesMade(outcome.nodes);
    });
    connect(files, &Source::replayed, this, [this](const ReplayOutcome &outcome) {
        emit aboutToEdit();
        m_replays.take(outcome, [this](const TagChanges &tagged) { m_tagMerges.add(tagged); });
        if (outcome.tagged.isEmpty())
            tellReplay();
        refreshModificationDate();
    });
    connect(&m_records, &RecordKeeper::fileTagsSettled, this, &DatabaseManger::tellReplay);
    connect(files, &Source::filesRemoved, this, [this](const QVector<qint64> &ids) {
        m_thumbnailCache->remove(ids);
        m_records.gotFilesRemoved(ids);
        refreshModificationDate();
    });
    connect(files, &Source::filesImported, &m_reload, &WholeReload::run);
    connect(files, &Source::noLongerPresent, &m_records, &RecordKeeper::gotMissedFileIds);
    connect(files, &Source::present, &m_records, &RecordKeeper::gotFoundFileIds);
    connect(files, &Source::fellShort, &m_errors, &ErrorTeller::tellShortfall);
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
    connect(files, &Source::additionSettled, this, &DatabaseManger::additionSettled);
    connect(files, &Source::filesModified, this, &DatabaseManger::filesModified);
    connect(files, &Source::checkBrokenOff, this, &DatabaseManger::checkBrokenOff);
    connect(files, &Source::extractedTempFiles, this, &DatabaseManger::extractedTempFiles);
    connect(files, &Source::importNotification, this, &DatabaseManger::importNotification);
    connect(files, &Source::thumbnailsFailed, &m_errors, &ErrorTeller::tellThumbnailFailure);
    connect(files, &Source::remadeAllThumbnails, this, [this] {
        m_thumbnailCache->clearCache();
        refreshModificationDate();
        emit remadeAllThumbnails();
    });
    // The worker says text and title, everybody above the manager title and text.
    connect(files, &Source::error, this,
            [this](const QString &text, const QString &title) { emit error(title, text); });
    connect(files, &Source::exchangeDone, this,
            [this](const QString &text, const QString &title) { emit showInformation(title, text); });
}

void DatabaseManger::connectErrors(BaseDBProvider *provider)
{
    m_errors.follow(provider);
    provider->setWriteGuard(m_writeGuard);
}

QSqlError DatabaseManger::openDB()
{
    m_errors.begin();
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
    // The version last, as it may only be read where the database is not locked.
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
    m_loads.clear();
    m_tagMerges.clear();
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
    if (m_errors.sawBusy() || (m_providers.general && m_providers.general->isConnectionLost()))
        return false;
    aboutToLoad();
    return true;
}

bool DatabaseManger::isReadyForEdits()
{
    // A dialog that keeps the database from being closed may be tried once more.
    if (m_errors.isConnectionLost()) {
        emit showTempWarning(tr("Warning"), tr("The connection to the database is lost."));
        return false;
    }
    if (m_reload.isReadingFiles() || m_records.loadState().isMerging())
        emit showTempWarning(tr("Warning"), tr("Local data is updating."));
    // The rest of an edit of several steps goes with its first one.
    if (isReloadDue() || m_records.loadState().isUnsettled())
        return false;
    if (m_records.loadState().isWhole())
        return true;
    if (m_loads.isWaiting())
        tellBusy();
    else
        emit showTempWarning(tr("Warning"),
                             tr("The database could not be read completely, so it cannot be changed."));
    return false;
}

void DatabaseManger::dropEdit()
{
    if (!isReloadDue())
        warnOfChanges();
    reloadLater();
}

void DatabaseManger::warnOfChanges()
{
    emit showTempWarning(tr("Warning"), tr("Local data is updating."));
}

bool DatabaseManger::isNameGiven(const QString &name)
{
    const bool isGiven = !name.trimmed().isEmpty();
    if (!isGiven)
        emit error(tr("Name Missing"), tr("A name must not be empty."));
    return isGiven;
}

EditResult DatabaseManger::runEdit(int reload, const EditBase &base, const std::function<EditResult()> &edit)
{
    return m_runner.run(reload, base, edit);
}

bool DatabaseManger::mergeTags(qint64 target, const QVector<qint64> &others)
{
    const bool areFew =
        qint64(m_records.files().map().size()) * (others.size() + 1) <= FileEdits::mostPairsAtOnce();
    return areFew ? m_replays.mergeTags(target, others) : m_fileEdits.mergeTags(target, others);
}

bool DatabaseManger::requestReplay(const EditStep &step, bool isUndo)
{
    const QVector<ChangeSet> edits = Replays::editsOf(step, isUndo);
    return m_fileEdits.replay(Replays::baseOf(edits), edits);
}

void DatabaseManger::tellReplay()
{
    ReplayOutcome outcome;
    EditRecord record;
    // The names of the tags that go are needed still.
    if (m_replays.isTaking() && m_replays.taking().mergeTarget > 0)
        EditNotes(record, m_records)
            .tagsMerged(m_replays.taking().mergeTarget, m_replays.taking().mergedTags,
                        m_replays.taking().merge);
    if (!m_replays.settle(outcome))
        return;
    if (outcome.mergeTarget > 0)
        emit edited(record.take());
    else
        emit replayed(outcome.losses);
}

bool DatabaseManger::areTagsOnNodes(const QVector<qint64> &tagIds)
{
    bool isUsed = false;
    return !m_providers.tags || !m_providers.tags->readUseOnNodes(tagIds, isUsed) || isUsed;
}

bool DatabaseManger::isStorable(const QString &text)
{
    // It could not be read back whole.
    if (!LongText::isTooLong(text))
        return true;
    emit showTempWarning(tr("Warning"), tr("The text is longer than %1 characters and was not stored.")
                                            .arg(QLocale().toString(LongText::mostCharacters)));
    return false;
}

bool DatabaseManger::runFileEdit(const EditBase &base, const std::function<bool()> &edit)
{
    const auto run = [&] { return EditResult{edit(), base.files, {}}; };
    return m_runner.run(PendingReloads::FileReload, base, run).isDone;
}

void DatabaseManger::readSettings()
{
    m_thumbnailCache->readSettings();
}

void DatabaseManger::reloadThumbnails(const QVector<qint64> &fileIds)
{
    m_thumbnailCache->reloadHeld(fileIds);
}

std::unique_ptr<ImageLoading> DatabaseManger::loadImage(qint64 fileId)
{
    return m_pictures ? m_pictures->load(fileId) : std::make_unique<ImageLoading>(StoredImage::UnknownFile);
}

StoredImage::Saving DatabaseManger::saveImage(qint64 fileId, const QImage &picture)
{
    EditBase base;
    // The edit is dropped when others have changed this very file since it was read.
    base.files = {fileId};
    if (!m_pictures || !mayEdit(base))
        return StoredImage::Refused;
    QVector<qint64> changedIds;
    StoredImage::Saving saving = m_pictures->save(fileId, picture, changedIds);
    // It was dropped with a word for what others have changed.
    if (saving == StoredImage::NotSaved && isReloadDue())
        saving = StoredImage::Refused;
    if (!changedIds.isEmpty()) {
        reloadFiles(changedIds);
        reloadThumbnails(changedIds);
    }
    refreshModificationDate();
    return saving;
}

bool DatabaseManger::exportDatabase(const ExportRequest &request)
{
    ExportTarget place;
    const std::shared_ptr<PartFile> target = place.make(request);
    if (target)
        m_fileEdits.exportDatabase(request, target);
    else
        emit error(tr("Exporting"), tr("Nothing can be exported to \"%1\".\n\nThe reason: %2")
                                        .arg(ShownText::cut(request.path), place.refusal()));
    return target != nullptr;
}

void DatabaseManger::cancelOperations()
{
    if (m_providers.fileOperation)
        m_providers.fileOperation->cancelOperations();
}

bool DatabaseManger::isBusy() const
{
    return loadState().isMerging() || (m_providers.fileOperation && m_providers.fileOperation->isBusy());
}

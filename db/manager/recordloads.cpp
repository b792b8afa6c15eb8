#include "db/manager/recordloads.h"

#include "app/settings/constants.h"
#include "core/providers/browstreeprovider.h"
#include "core/providers/groupsprovider.h"
#include "core/providers/mainviewprovider.h"
#include "core/providers/relationtreeprovider.h"
#include "core/providers/tagsprovider.h"
#include "db/loading/fileloader.h"
#include "db/manager/errorteller.h"
#include "db/manager/pendingreloads.h"
#include "db/manager/recordkeeper.h"
#include "db/sql/connections.h"
#include "db/sql/sqlitehandle.h"

#include <QElapsedTimer>
#include <QSqlDatabase>

#include <utility>

namespace {
// A step of the event loop; a batch takes a small part of it.
constexpr int stepMilliseconds = 8;
} // namespace

qint64 RecordLoads::mostFilesAtOnce = 20000;

RecordLoads::RecordLoads(RecordKeeper &records, ErrorTeller &errors)
    : m_records(records), m_errors(errors), m_pending(new PendingReloads(this))
{
    connect(m_pending, &PendingReloads::due, this, &RecordLoads::retry);
}

RecordLoads::~RecordLoads() = default;

void RecordLoads::loadAllTags()
{
    if (m_providers.tags)
        m_providers.tags->loadAllTags();
}

void RecordLoads::loadAllGroups()
{
    if (m_providers.groups)
        m_providers.groups->loadAllGroups();
}

void RecordLoads::loadAllNodes()
{
    if (m_providers.browsTree)
        m_providers.browsTree->loadAllNodes();
}

void RecordLoads::loadBrowsingTrees()
{
    if (m_providers.browsTree)
        m_providers.browsTree->loadAllTrees();
}

void RecordLoads::loadAllRelationNodes()
{
    if (m_providers.relationTree)
        m_providers.relationTree->loadAllNodes();
}

bool RecordLoads::beginFiles(const DBDetails &details, const QString &snapshot)
{
    dropLoader();
    MainViewProvider *files = m_providers.mainView;
    const bool isLocal = details.type() == Constants::localDatabase;
    if (!files || (isLocal && !sqliteHandle(QSqlDatabase::database(Connections::mainName(), false))))
        return false;
    m_highestId = files->highestId();
    m_toldPercent = 0;
    m_records.dropFiles();
    const FileStatements statements{files->allFilesText(), files->allTagsText(), files->copyText(), snapshot};
    m_loader = std::make_unique<FileLoader>(FileSource::make(details, statements));
    connect(m_loader.get(), &FileLoader::arrived, this, &RecordLoads::takeSome, Qt::QueuedConnection);
    m_loader->start();
    return true;
}

void RecordLoads::loadAllFiles()
{
    if (!m_providers.mainView)
        return;
    if (!m_loader) {
        m_records.dropFiles();
        m_providers.mainView->loadAllFiles();
        return;
    }
    FileBatch batch;
    while (m_loader->waitFor(batch))
        take(batch);
    m_next.stop();
    const std::unique_ptr<FileLoader> loader = std::move(m_loader);
    if (loader->isConnectionLost())
        m_errors.tellLoss();
    else if (loader->error().isValid())
        m_errors.tellError(loader->error());
    m_records.gotAllFiles(loader->isWhole(), {});
}

void RecordLoads::takeSome()
{
    if (!m_loader)
        return;
    QElapsedTimer timer;
    timer.start();
    FileBatch batch;
    while (!timer.hasExpired(stepMilliseconds) && m_loader->take(batch))
        take(batch);
    if (m_loader->isOver()) {
        m_next.stop();
        emit filesRead();
    } else if (timer.hasExpired(stepMilliseconds)) {
        m_next.start(0, this); // after what the user does
    } else {
        m_next.stop();
    }
}

void RecordLoads::timerEvent(QTimerEvent *)
{
    takeSome();
}

void RecordLoads::take(FileBatch &batch)
{
    if (batch.empty())
        return;
    // Files come by rising ids, so the highest one tells how far it is.
    const double part = m_highestId > 0 ? double(batch.back().id) / double(m_highestId) : 1;
    m_records.addFiles(batch);
    batch.clear();
    const int percent = static_cast<int>(100 * qBound(0.0, part, 1.0));
    if (percent > m_toldPercent)
        emit progress(m_toldPercent = percent);
}

void RecordLoads::dropLoader()
{
    m_next.stop();
    if (!m_loader)
        return;
    m_loader.reset();
    m_records.dropUnreadFiles();
}

void RecordLoads::loadTags(const QVector<qint64> &tagIds)
{
    if (m_providers.tags)
        runOrKeep(PendingReloads::TagReload, tagIds, [this, &tagIds] { m_providers.tags->loadTags(tagIds); });
}

void RecordLoads::loadNodes(const QVector<qint64> &nodeIds)
{
    if (m_providers.browsTree)
        runOrKeep(PendingReloads::NodeReload, nodeIds,
                  [this, &nodeIds] { m_providers.browsTree->loadNodes(nodeIds); });
}

void RecordLoads::loadFiles(const QVector<qint64> &fileIds)
{
    if (m_providers.mainView)
        runOrKeep(PendingReloads::FileReload, fileIds,
                  [this, &fileIds] { m_providers.mainView->loadFiles(fileIds); });
}

void RecordLoads::runOrKeep(int kind, const QVector<qint64> &ids, const std::function<void()> &load)
{
    // It would be hidden by what was read before it.
    if (m_loader || m_errors.runInSilence(load))
        keep(kind, ids);
}

void RecordLoads::keep(int kind, const QVector<qint64> &ids)
{
    m_pending->add(kind, ids);
}

bool RecordLoads::isWaiting() const
{
    return m_pending->isWaiting();
}

void RecordLoads::clear()
{
    m_pending->clear();
    dropLoader();
}

void RecordLoads::retry(int kind, const QVector<qint64> &ids)
{
    switch (kind) {
    case PendingReloads::TagReload:
        loadTags(ids);
        break;
    case PendingReloads::GroupReload:
        runOrKeep(kind, ids, [this, &ids] { m_providers.groups->loadGroups(ids); });
        break;
    case PendingReloads::NodeReload:
        loadNodes(ids);
        break;
    case PendingReloads::FileReload:
        loadFiles(ids);
        break;
    case PendingReloads::FullReload:
        emit fullReloadDue();
        break;
    case PendingReloads::ThumbnailReload:
        for (const qint64 id : ids)
            emit thumbnailDue(id);
        break;
    default:
        break;
    }
}

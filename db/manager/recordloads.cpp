#include "db/manager/recordloads.h"

#include "core/providers/browstreeprovider.h"
#include "core/providers/groupsprovider.h"
#include "core/providers/mainviewprovider.h"
#include "core/providers/relationtreeprovider.h"
#include "core/providers/tagsprovider.h"
#include "db/manager/errorteller.h"
#include "db/manager/pendingreloads.h"
#include "db/manager/recordkeeper.h"

RecordLoads::RecordLoads(RecordKeeper &records, ErrorTeller &errors)
    : m_records(records), m_errors(errors), m_pending(new PendingReloads(this))
{
    connect(m_pending, &PendingReloads::due, this, &RecordLoads::retry);
}

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

void RecordLoads::loadAllFiles()
{
    if (!m_providers.mainView)
        return;
    m_records.dropFiles();
    m_providers.mainView->loadAllFiles();
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
    if (m_errors.runInSilence(load))
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

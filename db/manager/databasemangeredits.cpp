// The operations of the manager: what a caller asks for goes to the provider of its domain.
#include "core/providers/browstreeprovider.h"
#include "core/providers/groupsprovider.h"
#include "core/providers/mainviewprovider.h"
#include "core/providers/relationtreeprovider.h"
#include "core/providers/tagremoval.h"
#include "core/providers/tagsprovider.h"
#include "core/records/groupitem.h"
#include "core/records/tbnode.h"
#include "db/manager/databasemanger.h"
#include "db/manager/pendingreloads.h"
#include "db/manager/removalplans.h"
#include "db/sql/longtext.h"
#include "db/sql/transaction.h"
#include "fileops/contents/imagestore.h"
#include "fileops/provider/fileoperationprovider.h"
#include "fileops/provider/thumbnailcache.h"

#include <QSet>

#include <algorithm>

namespace {
QVector<qint64> without(const QVector<qint64> &ids, const QVector<qint64> &others)
{
    const QSet<qint64> excluded(others.cbegin(), others.cend());
    QVector<qint64> rest;
    for (const qint64 id : ids) {
        if (!excluded.contains(id))
            rest.append(id);
    }
    return rest;
}

QVector<qint64> idsIf(bool isDone, const QVector<qint64> &ids)
{
    return isDone ? ids : QVector<qint64>();
}
} // namespace

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

qint64 DatabaseManger::addTag(const QString &name, const QVector<qint64> &fileIds)
{
    MainViewProvider *files = m_providers.mainView;
    return files ? addTagWith(name, *files, PendingReloads::FileReload, fileIds,
                              [&](qint64 tagId) { return files->linkTags(fileIds, {tagId}); })
                 : 0;
}

qint64 DatabaseManger::addTagToGroup(const QString &name, qint64 groupId)
{
    GroupsProvider *groups = m_providers.groups;
    if (!groups || !m_groups.map().contains(groupId))
        return addTag(name);
    return addTagWith(name, *groups, PendingReloads::GroupReload, {groupId},
                      [&](qint64 tagId) { return groups->setGroupTags(groupId, {}, {tagId}); });
}

qint64 DatabaseManger::addTagWith(const QString &name, BaseDBProvider &linker, int reload,
                                  const QVector<qint64> &linkedIds, const std::function<bool(qint64)> &link)
{
    if (!m_providers.tags || !isNameGiven(name) || !isStorable(name) || !isDataCurrent())
        return 0;
    qint64 tagId = 0;
    bool isAdded = false;
    {
        JointTransaction transaction(*m_providers.tags, {&linker});
        tagId = transaction.isActive() ? m_providers.tags->addTag(name) : 0;
        isAdded = tagId > 0 && link(tagId) && transaction.commit();
    }
    // The tag was known from its insert on.
    if (!isAdded && tagId > 0)
        gotTagsRemoved(true, {tagId});
    loadOrKeep(reload, linkedIds, [&linker] { linker.tellNews(); });
    refreshModificationDate();
    return isAdded ? tagId : 0;
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

void DatabaseManger::renameTag(qint64 tagId, const QString &name)
{
    if (isNameGiven(name))
        updateTag(tagId, QStringLiteral("tag_name"), name);
}

void DatabaseManger::changeTagDescription(qint64 tagId, const QString &text)
{
    updateTag(tagId, QStringLiteral("tag_description"), text);
}

void DatabaseManger::updateTag(qint64 tagId, const QString &column, const QString &value)
{
    if (!m_providers.tags || !isStorable(value) || !isDataCurrent())
        return;
    runEdit(PendingReloads::TagReload,
            [&] { return idsIf(m_providers.tags->updateTag(tagId, column, value), {tagId}); });
}

void DatabaseManger::updateTags(const QVector<qint64> &tagIds)
{
    if (m_providers.tags)
        loadOrKeep(PendingReloads::TagReload, tagIds,
                   [this, &tagIds] { m_providers.tags->loadTags(tagIds); });
}

bool DatabaseManger::removeTags(const QVector<qint64> &tagIds)
{
    if (tagIds.isEmpty() || !isDataCurrent())
        return false;
    const TagRemovalPlan plan = RemovalPlans::tags(m_nodes.map(), m_relations, tagIds);
    TagRemover remover(constructor(), *m_providers.tags, *m_providers.browsTree, *m_providers.relationTree);
    connectErrors(&remover);
    if (!remover.run(plan))
        return false;
    m_providers.relationTree->tellNews();
    tellRemoval(plan);
    m_groups.forgetTags(tagIds);
    const QVector<qint64> changed = m_files.forgetTags(remover.unlinkedFileIds(), tagIds);
    if (!changed.isEmpty())
        emit filesChanged(changed);
    m_providers.tags->tellNews();
    refreshModificationDate();
    return true;
}

void DatabaseManger::loadAllGroups()
{
    if (m_providers.groups)
        m_providers.groups->loadAllGroups();
}

qint64 DatabaseManger::addGroup(const QString &name, bool visible)
{
    if (!m_providers.groups || !isNameGiven(name) || !isStorable(name) || !isDataCurrent())
        return 0;
    const qint64 groupId = runEdit(PendingReloads::GroupReload, [&] {
                               const qint64 id = m_providers.groups->addGroup(name);
                               return idsIf(id > 0, {id});
                           }).value(0);
    GroupItem *group = m_groups.map().value(groupId);
    if (group)
        group->setVisible(visible);
    return groupId;
}

void DatabaseManger::renameGroup(qint64 groupId, const QString &name)
{
    if (!m_providers.groups || !isNameGiven(name) || !isStorable(name) || !isDataCurrent())
        return;
    m_providers.groups->renameGroup(groupId, name);
    refreshModificationDate();
}

void DatabaseManger::removeGroups(const QVector<qint64> &groupIds)
{
    if (!m_providers.groups || !isDataCurrent())
        return;
    m_providers.groups->removeGroups(groupIds);
    refreshModificationDate();
}

bool DatabaseManger::setGroupTags(qint64 groupId, const QVector<qint64> &tagIds)
{
    return setGroupTags({{groupId, tagIds}});
}

bool DatabaseManger::setGroupTags(const QMap<qint64, QVector<qint64>> &tagsOfGroups)
{
    if (!m_providers.groups || !isDataCurrent())
        return false;
    QVector<GroupTagChange> changes;
    for (auto it = tagsOfGroups.cbegin(); it != tagsOfGroups.cend(); ++it) {
        // Groups and tags may have gone while a dialog or a drag held on to their ids.
        const GroupItem *group = m_groups.map().value(it.key());
        if (!group)
            continue;
        QVector<qint64> added = without(*it, group->tags());
        const auto isGone = [this](qint64 tagId) { return !hasTag(tagId); };
        added.erase(std::remove_if(added.begin(), added.end(), isGone), added.end());
        changes.append({it.key(), without(group->tags(), *it), added});
    }
    bool isSet = false;
    runEdit(PendingReloads::GroupReload, [&] {
        isSet = m_providers.groups->setGroupTags(changes);
        return idsIf(isSet, tagsOfGroups.keys().toVector());
    });
    return isSet;
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

qint64 DatabaseManger::addNodeBelow(qint64 tagId, qint64 parentId)
{
    if (!m_providers.browsTree || !isDataCurrent())
        return 0;
    return runEdit(PendingReloads::NodeReload,
                   [&] {
                       const qint64 id = m_providers.browsTree->addNode(tagId, true, false, parentId);
                       return idsIf(id > 0, {id});
                   })
        .value(0);
}

qint64 DatabaseManger::addNodeAbove(qint64 tagId, qint64 nodeId)
{
    if (!m_nodes.map().contains(nodeId) || !m_providers.browsTree || !isDataCurrent())
        return 0;
    return runEdit(PendingReloads::NodeReload,
                   [&] {
                       const qint64 id =
                           m_providers.browsTree->addNodeAbove(tagId, true, false, parentOf(nodeId), nodeId);
                       return idsIf(id > 0, {id, nodeId});
                   })
        .value(0);
}

qint64 DatabaseManger::parentOf(qint64 nodeId) const
{
    const TBnode *node = m_nodes.map().value(nodeId);
    const TBnode *parent = node ? node->parentNode() : nullptr;
    return parent && parent->nodeType() == TagNode ? parent->id() : 0;
}

void DatabaseManger::addNodesBelow(const QVector<qint64> &tagIds, qint64 parentId)
{
    if (tagIds.isEmpty() || !m_providers.browsTree || !isDataCurrent())
        return;
    const QVector<qint64> ids = m_providers.browsTree->addNodes(tagIds, true, false, parentId);
    if (!ids.isEmpty())
        reloadNodes(ids);
    refreshModificationDate();
}

void DatabaseManger::addNodesAbove(const QVector<qint64> &tagIds, qint64 nodeId)
{
    if (tagIds.isEmpty() || !m_nodes.map().contains(nodeId) || !m_providers.browsTree || !isDataCurrent())
        return;
    const QVector<qint64> ids =
        m_providers.browsTree->addNodesAbove(tagIds, true, false, parentOf(nodeId), nodeId);
    // Read together with the node that they went above, which tells of its new parent.
    if (!ids.isEmpty())
        reloadNodes(ids + QVector<qint64>{nodeId});
    refreshModificationDate();
}

bool DatabaseManger::removeNodes(const QVector<qint64> &nodeIds)
{
    return isDataCurrent() && runRemoval(RemovalPlans::subtrees(m_nodes.map(), nodeIds));
}

bool DatabaseManger::removeNodesKeepingChildren(const QVector<qint64> &nodeIds)
{
    return isDataCurrent() && runRemoval(RemovalPlans::keepingChildren(m_nodes.map(), nodeIds));
}

bool DatabaseManger::runRemoval(const NodeRemovalPlan &plan)
{
    if (plan.isEmpty())
        return true;
    NodeRemover remover(constructor(), *m_providers.browsTree);
    connectErrors(&remover);
    if (!remover.run(plan))
        return false;
    tellRemoval(plan);
    refreshModificationDate();
    return true;
}

void DatabaseManger::updateNode(qint64 nodeId, const QString &column, const QString &value)
{
    if (!m_providers.browsTree || !isDataCurrent())
        return;
    m_providers.browsTree->updateNode(nodeId, column, value);
    refreshModificationDate();
}

void DatabaseManger::loadBrowsingTrees()
{
    if (m_providers.browsTree)
        m_providers.browsTree->loadAllTrees();
}

qint64 DatabaseManger::addBrowsingTree(const QString &name)
{
    if (!m_providers.browsTree || !isNameGiven(name) || !isDataCurrent())
        return 0;
    const qint64 treeId = m_providers.browsTree->addTree(name);
    refreshModificationDate();
    return treeId;
}

bool DatabaseManger::removeBrowsingTree(qint64 treeId)
{
    if (!m_providers.browsTree || !isDataCurrent())
        return false;
    const bool isRemoved = m_providers.browsTree->removeTree(treeId);
    refreshModificationDate();
    return isRemoved;
}

bool DatabaseManger::renameBrowsingTree(qint64 treeId, const QString &name)
{
    if (!m_providers.browsTree || !isNameGiven(name) || !isDataCurrent())
        return false;
    const bool isRenamed = m_providers.browsTree->updateTree(treeId, QStringLiteral("tree_name"), name);
    refreshModificationDate();
    return isRenamed;
}

void DatabaseManger::loadAllRelationNodes()
{
    if (m_providers.relationTree)
        m_providers.relationTree->loadAllNodes();
}

void DatabaseManger::addRelations(const QString &parentPath, const QVector<qint64> &tagIds)
{
    if (!m_providers.relationTree || !isDataCurrent())
        return;
    const QString prefix = parentPath.isEmpty() ? QString() : parentPath + QLatin1Char('.');
    QVector<qint64> fresh;
    // One path that is there already would fail the insert of all.
    for (const qint64 tagId : tagIds) {
        if (!m_relations.contains(prefix + QString::number(tagId)))
            fresh.append(tagId);
    }
    m_providers.relationTree->addPaths(parentPath, fresh);
    refreshModificationDate();
}

void DatabaseManger::removeRelations(const QStringList &paths)
{
    if (!m_providers.relationTree || !isDataCurrent())
        return;
    m_providers.relationTree->removePaths(m_relations.withDescendants(paths));
    refreshModificationDate();
}

void DatabaseManger::loadAllFiles()
{
    if (!m_providers.mainView)
        return;
    // Old records and new ones together would need twice the memory, so the views are emptied first.
    const QList<File *> old = m_files.clear();
    if (!old.isEmpty())
        emit filesLoaded(m_files.map());
    qDeleteAll(old);
    m_files.beginLoad();
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

#include "db/manager/recordedits.h"

#include "core/providers/browstreeprovider.h"
#include "core/providers/groupsprovider.h"
#include "core/providers/mainviewprovider.h"
#include "core/providers/relationtreeprovider.h"
#include "core/providers/tagremoval.h"
#include "core/providers/tagsprovider.h"
#include "core/records/groupitem.h"
#include "core/records/tbnode.h"
#include "db/manager/pendingreloads.h"
#include "db/manager/recordkeeper.h"
#include "db/manager/removalplans.h"
#include "db/sql/transaction.h"

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

void RecordEdits::setProviders(const DatabaseProviders &providers,
                               const AbstractQueryConstructor *constructor)
{
    m_providers = providers;
    m_constructor = constructor;
}

qint64 RecordEdits::addTag(const QString &name, const QVector<qint64> &fileIds)
{
    MainViewProvider *files = m_providers.mainView;
    return files ? addTagWith(name, *files, PendingReloads::FileReload, fileIds,
                              [&](qint64 tagId) { return files->linkTags(fileIds, {tagId}); })
                 : 0;
}

qint64 RecordEdits::addTagToGroup(const QString &name, qint64 groupId)
{
    GroupsProvider *groups = m_providers.groups;
    if (!groups || !m_records.groups().map().contains(groupId))
        return addTag(name, {});
    return addTagWith(name, *groups, PendingReloads::GroupReload, {groupId},
                      [&](qint64 tagId) { return groups->setGroupTags(groupId, {}, {tagId}); });
}

qint64 RecordEdits::addTagWith(const QString &name, BaseDBProvider &linker, int reload,
                               const QVector<qint64> &linkedIds, const std::function<bool(qint64)> &link)
{
    if (!m_providers.tags || !m_host.isNameGiven(name) || !m_host.isStorable(name) || !m_host.isDataCurrent())
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
        m_records.gotTagsRemoved(true, {tagId});
    m_host.loadOrKeep(reload, linkedIds, [&linker] { linker.tellNews(); });
    m_host.refreshModificationDate();
    return isAdded ? tagId : 0;
}

void RecordEdits::renameTag(qint64 tagId, const QString &name)
{
    if (m_host.isNameGiven(name))
        updateTag(tagId, QStringLiteral("tag_name"), name);
}

void RecordEdits::changeTagDescription(qint64 tagId, const QString &text)
{
    updateTag(tagId, QStringLiteral("tag_description"), text);
}

void RecordEdits::updateTag(qint64 tagId, const QString &column, const QString &value)
{
    if (!m_providers.tags || !m_host.isStorable(value) || !m_host.isDataCurrent())
        return;
    m_host.runEdit(PendingReloads::TagReload,
                   [&] { return idsIf(m_providers.tags->updateTag(tagId, column, value), {tagId}); });
}

bool RecordEdits::removeTags(const QVector<qint64> &tagIds)
{
    if (tagIds.isEmpty() || !m_host.isDataCurrent())
        return false;
    const TagRemovalPlan plan = RemovalPlans::tags(m_records.nodes().map(), m_records.relations(), tagIds);
    TagRemover remover(m_constructor, *m_providers.tags, *m_providers.browsTree, *m_providers.relationTree);
    m_host.connectErrors(&remover);
    if (!remover.run(plan))
        return false;
    m_providers.relationTree->tellNews();
    tellRemoval(plan);
    m_records.forgetTags(tagIds, remover.unlinkedFileIds());
    m_providers.tags->tellNews();
    m_host.refreshModificationDate();
    return true;
}

qint64 RecordEdits::addGroup(const QString &name, bool visible)
{
    if (!m_providers.groups || !m_host.isNameGiven(name) || !m_host.isStorable(name) ||
        !m_host.isDataCurrent())
        return 0;
    const qint64 groupId = m_host
                               .runEdit(PendingReloads::GroupReload,
                                        [&] {
                                            const qint64 id = m_providers.groups->addGroup(name);
                                            return idsIf(id > 0, {id});
                                        })
                               .value(0);
    GroupItem *group = m_records.groups().map().value(groupId);
    if (group)
        group->setVisible(visible);
    return groupId;
}

void RecordEdits::renameGroup(qint64 groupId, const QString &name)
{
    if (!m_providers.groups || !m_host.isNameGiven(name) || !m_host.isStorable(name) ||
        !m_host.isDataCurrent())
        return;
    m_providers.groups->renameGroup(groupId, name);
    m_host.refreshModificationDate();
}

void RecordEdits::removeGroups(const QVector<qint64> &groupIds)
{
    if (!m_providers.groups || !m_host.isDataCurrent())
        return;
    m_providers.groups->removeGroups(groupIds);
    m_host.refreshModificationDate();
}

bool RecordEdits::setGroupTags(const QMap<qint64, QVector<qint64>> &tagsOfGroups)
{
    if (!m_providers.groups || !m_host.isDataCurrent())
        return false;
    QVector<GroupTagChange> changes;
    for (auto it = tagsOfGroups.cbegin(); it != tagsOfGroups.cend(); ++it) {
        // Groups and tags may have gone while a dialog or a drag held on to their ids.
        const GroupItem *group = m_records.groups().map().value(it.key());
        if (!group)
            continue;
        QVector<qint64> added = without(*it, group->tags());
        const auto isGone = [this](qint64 tagId) { return !m_records.tags().row(tagId); };
        added.erase(std::remove_if(added.begin(), added.end(), isGone), added.end());
        changes.append({it.key(), without(group->tags(), *it), added});
    }
    bool isSet = false;
    m_host.runEdit(PendingReloads::GroupReload, [&] {
        isSet = m_providers.groups->setGroupTags(changes);
        return idsIf(isSet, tagsOfGroups.keys().toVector());
    });
    return isSet;
}

qint64 RecordEdits::addNodeBelow(qint64 tagId, qint64 parentId)
{
    if (!m_providers.browsTree || !m_host.isDataCurrent())
        return 0;
    return m_host
        .runEdit(PendingReloads::NodeReload,
                 [&] {
                     const qint64 id = m_providers.browsTree->addNode(tagId, true, false, parentId);
                     return idsIf(id > 0, {id});
                 })
        .value(0);
}

qint64 RecordEdits::addNodeAbove(qint64 tagId, qint64 nodeId)
{
    if (!m_records.nodes().map().contains(nodeId) || !m_providers.browsTree || !m_host.isDataCurrent())
        return 0;
    return m_host
        .runEdit(PendingReloads::NodeReload,
                 [&] {
                     const qint64 id =
                         m_providers.browsTree->addNodeAbove(tagId, true, false, parentOf(nodeId), nodeId);
                     return idsIf(id > 0, {id, nodeId});
                 })
        .value(0);
}

qint64 RecordEdits::parentOf(qint64 nodeId) const
{
    const TBnode *node = m_records.nodes().map().value(nodeId);
    const TBnode *parent = node ? node->parentNode() : nullptr;
    return parent && parent->nodeType() == TagNode ? parent->id() : 0;
}

void RecordEdits::addNodesBelow(const QVector<qint64> &tagIds, qint64 parentId)
{
    if (tagIds.isEmpty() || !m_providers.browsTree || !m_host.isDataCurrent())
        return;
    const QVector<qint64> ids = m_providers.browsTree->addNodes(tagIds, true, false, parentId);
    if (!ids.isEmpty())
        m_host.reloadNodes(ids);
    m_host.refreshModificationDate();
}

void RecordEdits::addNodesAbove(const QVector<qint64> &tagIds, qint64 nodeId)
{
    if (tagIds.isEmpty() || !m_records.nodes().map().contains(nodeId) || !m_providers.browsTree ||
        !m_host.isDataCurrent())
        return;
    const QVector<qint64> ids =
        m_providers.browsTree->addNodesAbove(tagIds, true, false, parentOf(nodeId), nodeId);
    // Read together with the node that they went above, which tells of its new parent.
    if (!ids.isEmpty())
        m_host.reloadNodes(ids + QVector<qint64>{nodeId});
    m_host.refreshModificationDate();
}

bool RecordEdits::removeNodes(const QVector<qint64> &nodeIds)
{
    return m_host.isDataCurrent() && runRemoval(RemovalPlans::subtrees(m_records.nodes().map(), nodeIds));
}

bool RecordEdits::removeNodesKeepingChildren(const QVector<qint64> &nodeIds)
{
    return m_host.isDataCurrent() &&
           runRemoval(RemovalPlans::keepingChildren(m_records.nodes().map(), nodeIds));
}

bool RecordEdits::runRemoval(const NodeRemovalPlan &plan)
{
    if (plan.isEmpty())
        return true;
    NodeRemover remover(m_constructor, *m_providers.browsTree);
    m_host.connectErrors(&remover);
    if (!remover.run(plan))
        return false;
    tellRemoval(plan);
    m_host.refreshModificationDate();
    return true;
}

void RecordEdits::updateNode(qint64 nodeId, const QString &column, const QString &value)
{
    if (!m_providers.browsTree || !m_host.isDataCurrent())
        return;
    m_providers.browsTree->updateNode(nodeId, column, value);
    m_host.refreshModificationDate();
}

qint64 RecordEdits::addBrowsingTree(const QString &name)
{
    if (!m_providers.browsTree || !m_host.isNameGiven(name) || !m_host.isDataCurrent())
        return 0;
    const qint64 treeId = m_providers.browsTree->addTree(name);
    m_host.refreshModificationDate();
    return treeId;
}

bool RecordEdits::removeBrowsingTree(qint64 treeId)
{
    if (!m_providers.browsTree || !m_host.isDataCurrent())
        return false;
    const bool isRemoved = m_providers.browsTree->removeTree(treeId);
    m_host.refreshModificationDate();
    return isRemoved;
}

bool RecordEdits::renameBrowsingTree(qint64 treeId, const QString &name)
{
    if (!m_providers.browsTree || !m_host.isNameGiven(name) || !m_host.isDataCurrent())
        return false;
    const bool isRenamed = m_providers.browsTree->updateTree(treeId, QStringLiteral("tree_name"), name);
    m_host.refreshModificationDate();
    return isRenamed;
}

void RecordEdits::addRelations(const QString &parentPath, const QVector<qint64> &tagIds)
{
    if (!m_providers.relationTree || !m_host.isDataCurrent())
        return;
    const QString prefix = parentPath.isEmpty() ? QString() : parentPath + QLatin1Char('.');
    QVector<qint64> fresh;
    // One path that is there already would fail the insert of all.
    for (const qint64 tagId : tagIds) {
        if (!m_records.relations().contains(prefix + QString::number(tagId)))
            fresh.append(tagId);
    }
    m_providers.relationTree->addPaths(parentPath, fresh);
    m_host.refreshModificationDate();
}

void RecordEdits::removeRelations(const QStringList &paths)
{
    if (!m_providers.relationTree || !m_host.isDataCurrent())
        return;
    m_providers.relationTree->removePaths(m_records.relations().withDescendants(paths));
    m_host.refreshModificationDate();
}

void RecordEdits::tellRemoval(const NodeRemovalPlan &plan)
{
    m_records.removeNodes(plan, [this] { m_providers.browsTree->tellNews(); });
}

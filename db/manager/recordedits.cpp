#include "db/manager/recordedits.h"

#include "core/providers/browstreeprovider.h"
#include "core/providers/groupsprovider.h"
#include "core/providers/mainviewprovider.h"
#include "core/providers/relationtreeprovider.h"
#include "core/providers/tagremoval.h"
#include "core/providers/tagsprovider.h"
#include "core/records/groupitem.h"
#include "core/records/tbnode.h"
#include "db/manager/editbases.h"
#include "db/manager/editnotes.h"
#include "db/manager/pendingreloads.h"
#include "db/manager/recordkeeper.h"
#include "db/manager/removalplans.h"
#include "db/sql/transaction.h"

#include <QSet>

#include <algorithm>
#include <iterator>

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
} // namespace

void RecordEdits::setProviders(const DatabaseProviders &providers,
                               const AbstractQueryConstructor *constructor)
{
    m_providers = providers;
    m_constructor = constructor;
}

bool RecordEdits::runEdit(int reload, const EditBase &base, const std::function<bool()> &edit)
{
    return m_host.runEdit(reload, base, [&] { return EditResult{edit(), {}, {}}; }).isDone;
}

qint64 RecordEdits::addTag(const QString &name, const QVector<qint64> &fileIds)
{
    MainViewProvider *files = m_providers.mainView;
    EditBase base;
    base.files = fileIds;
    if (!files)
        return 0;
    const auto link = [&](const QVector<qint64> &tagIds) {
        m_host.notes().tagAdded(name, m_host.notes().links(Tagging::of(fileIds, tagIds, {})));
        return EditResult{files->linkTags(fileIds, tagIds), fileIds, {}};
    };
    return addTagsWith({name}, *files, PendingReloads::FileReload, base, link).value(0);
}

qint64 RecordEdits::addTagToGroup(const QString &name, qint64 groupId)
{
    GroupsProvider *groups = m_providers.groups;
    if (!groups || !m_records.groups().map().contains(groupId))
        return addTag(name, {});
    const auto join = [&](const QVector<qint64> &tagIds) {
        m_host.notes().tagAdded(name, 0);
        m_host.notes().groupJoined(tagIds);
        return EditResult{groups->setGroupTags(groupId, {}, tagIds), {groupId}, {}};
    };
    return addTagsWith({name}, *groups, PendingReloads::GroupReload, EditBases::ofGroups({groupId}), join)
        .value(0);
}

bool RecordEdits::tagFiles(const QVector<qint64> &fileIds, const ChosenTags &tags)
{
    MainViewProvider *files = m_providers.mainView;
    EditBase base = EditBases::ofTags(tags.ids);
    base.files = fileIds;
    const auto link = [&](const QVector<qint64> &newIds) {
        const int changed = m_host.notes().links(Tagging::of(fileIds, tags.ids + newIds, {}));
        if (tags.ids.isEmpty() && newIds.size() == 1)
            m_host.notes().tagAdded(tags.newNames.first(), changed);
        return EditResult{files->linkTags(fileIds, tags.ids + newIds), fileIds, {}};
    };
    return files && !addTagsWith(tags.newNames, *files, PendingReloads::FileReload, base, link).isEmpty();
}

QVector<qint64> RecordEdits::addTagsWith(const QStringList &names, BaseDBProvider &user, int reload,
                                         const EditBase &base,
                                         const std::function<EditResult(const QVector<qint64> &)> &use)
{
    const auto isFit = [this](const QString &name) {
        return m_host.isNameGiven(name) && m_host.isStorable(name);
    };
    if (!m_providers.tags || !std::all_of(names.cbegin(), names.cend(), isFit))
        return {};
    QVector<qint64> tagIds;
    const auto add = [&]() -> EditResult {
        tagIds.clear();
        EditResult result;
        {
            JointTransaction transaction(*m_providers.tags, {&user});
            const auto addOne = [&](const QString &name) {
                tagIds.append(m_providers.tags->addTag(name));
                return tagIds.last() > 0;
            };
            if (transaction.isActive() && std::all_of(names.cbegin(), names.cend(), addOne))
                result = use(tagIds);
            m_host.notes().tagsMade(tagIds);
            result.isDone = result.isDone && transaction.commit();
        }
        // They may be known from their inserts on.
        if (!result.isDone)
            m_records.gotTagsRemoved(true, knownTags(tagIds));
        return result;
    };
    return m_host.runEdit(reload, base, add).isDone ? tagIds : QVector<qint64>();
}

QVector<qint64> RecordEdits::knownTags(const QVector<qint64> &tagIds) const
{
    QVector<qint64> known;
    std::copy_if(tagIds.cbegin(), tagIds.cend(), std::back_inserter(known),
                 [this](qint64 tagId) { return m_records.tags().row(tagId) != nullptr; });
    return known;
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
    if (!m_providers.tags || !m_host.isStorable(value))
        return;
    m_host.runEdit(PendingReloads::TagReload, EditBases::ofTags({tagId}), [&] {
        const bool isNoted = column == QLatin1String("tag_name") ? m_host.notes().tagRenamed(tagId, value)
                                                                 : m_host.notes().tagDescribed(tagId);
        return EditResult{isNoted && m_providers.tags->updateTag(tagId, column, value), {tagId}, {}};
    });
}

bool RecordEdits::removeTags(const QVector<qint64> &tagIds)
{
    if (tagIds.isEmpty())
        return false;
    const auto remove = [&]() -> EditResult {
        const TagRemovalPlan plan =
            RemovalPlans::tags(m_records.nodes().map(), m_records.relations(), tagIds);
        EditBase base = EditBases::ofRemoval(plan);
        base.relations = plan.removedPaths;
        if (!m_host.mayTouch(base))
            return {};
        TagRemover remover(m_constructor, *m_providers.tags, *m_providers.browsTree,
                           *m_providers.relationTree);
        m_host.include(&remover);
        const bool isDone = m_host.notes().tagsRemoved(tagIds) && remover.run(plan);
        const QVector<qint64> unlinked = remover.unlinkedFileIds();
        // What was in use has been asked about, and is not taken back.
        if (!unlinked.isEmpty() || !plan.removedNodeIds.isEmpty() || !plan.removedPaths.isEmpty())
            m_host.notes().forget();
        return {isDone, {}, [this, plan, unlinked] {
                    m_providers.relationTree->tellNews();
                    tellRemoval(plan);
                    m_records.forgetTags(plan.tagIds, unlinked);
                    m_providers.tags->tellNews();
                }};
    };
    return m_host.runEdit(PendingReloads::TagReload, EditBases::ofTags(tagIds), remove).isDone;
}

qint64 RecordEdits::addGroup(const QString &name, bool visible)
{
    if (!m_providers.groups || !m_host.isNameGiven(name) || !m_host.isStorable(name))
        return 0;
    qint64 groupId = 0;
    const auto add = [&]() -> EditResult {
        groupId = m_providers.groups->addGroup(name);
        m_host.notes().groupAdded(groupId, name);
        return {groupId > 0, {groupId}, {}};
    };
    if (!m_host.runEdit(PendingReloads::GroupReload, {}, add).isDone)
        return 0;
    GroupItem *group = m_records.groups().map().value(groupId);
    if (group)
        group->setVisible(visible);
    return groupId;
}

void RecordEdits::renameGroup(qint64 groupId, const QString &name)
{
    if (m_providers.groups && m_host.isNameGiven(name) && m_host.isStorable(name))
        runEdit(PendingReloads::GroupReload, EditBases::ofGroups({groupId}), [&] {
            return m_host.notes().groupRenamed(groupId, name) &&
                   m_providers.groups->renameGroup(groupId, name);
        });
}

void RecordEdits::removeGroups(const QVector<qint64> &groupIds)
{
    if (m_providers.groups)
        runEdit(PendingReloads::GroupReload, EditBases::ofGroups(groupIds), [&] {
            return m_host.notes().groupsRemoved(groupIds) && m_providers.groups->removeGroups(groupIds);
        });
}

bool RecordEdits::setGroupTags(const QMap<qint64, QVector<qint64>> &tagsOfGroups)
{
    if (!m_providers.groups)
        return false;
    const QVector<qint64> groupIds = tagsOfGroups.keys().toVector();
    const auto change = [&]() -> EditResult {
        QVector<GroupTagChange> changes;
        EditBase base;
        for (auto it = tagsOfGroups.cbegin(); it != tagsOfGroups.cend(); ++it) {
            // Groups and tags may have gone while a dialog or a drag held on to their ids.
            const GroupItem *group = m_records.groups().map().value(it.key());
            if (!group)
                continue;
            QVector<qint64> added = without(*it, group->tags());
            const auto isGone = [this](qint64 tagId) { return !m_records.tags().row(tagId); };
            added.erase(std::remove_if(added.begin(), added.end(), isGone), added.end());
            base.tags += added;
            changes.append({it.key(), without(group->tags(), *it), added});
        }
        if (!m_host.mayTouch(base))
            return {};
        return {m_host.notes().groupsChanged(groupIds) && m_providers.groups->setGroupTags(changes),
                groupIds,
                {}};
    };
    return m_host.runEdit(PendingReloads::GroupReload, EditBases::ofGroups(groupIds), change).isDone;
}

qint64 RecordEdits::addNodes(const QVector<qint64> &tagIds, const QVector<qint64> &nodeIds,
                             const std::function<QVector<qint64>()> &add)
{
    if (tagIds.isEmpty() || !m_providers.browsTree)
        return 0;
    QVector<qint64> ids;
    const auto run = [&]() -> EditResult {
        if (!m_host.notes().nodesMove(nodeIds))
            return {};
        ids = add();
        m_host.notes().nodesAdded(ids, tagIds);
        // Read together with a node that they went above, which tells of its new parent.
        const QVector<qint64> reloaded = ids + nodeIds;
        m_providers.browsTree->expectNodes(reloaded);
        return {!ids.isEmpty(), {}, [this, reloaded] { m_host.reloadNodes(reloaded); }};
    };
    return m_host.runEdit(PendingReloads::NodeReload, EditBases::ofNodes(nodeIds, tagIds), run).isDone
               ? ids.first()
               : 0;
}

qint64 RecordEdits::addNodeBelow(qint64 tagId, qint64 parentId)
{
    return addNodesBelow({tagId}, parentId);
}

qint64 RecordEdits::addNodeAbove(qint64 tagId, qint64 nodeId)
{
    return addNodesAbove({tagId}, nodeId);
}

qint64 RecordEdits::parentOf(qint64 nodeId) const
{
    const TBnode *node = m_records.nodes().map().value(nodeId);
    const TBnode *parent = node ? node->parentNode() : nullptr;
    return parent && parent->nodeType() == TagNode ? parent->id() : 0;
}

qint64 RecordEdits::addNodesBelow(const QVector<qint64> &tagIds, qint64 parentId)
{
    const QVector<qint64> parents = parentId > 0 ? QVector<qint64>{parentId} : QVector<qint64>();
    return addNodes(tagIds, parents,
                    [&] { return m_providers.browsTree->addNodes(tagIds, true, false, parentId); });
}

bool RecordEdits::addNodesOf(const ChosenTags &tags, qint64 parentId)
{
    BrowsTreeProvider *tree = m_providers.browsTree;
    const QVector<qint64> parents = parentId > 0 ? QVector<qint64>{parentId} : QVector<qint64>();
    const auto use = [&](const QVector<qint64> &newIds) -> EditResult {
        const QVector<qint64> nodeIds = tree->addNodes(tags.ids + newIds, true, false, parentId);
        m_host.notes().nodesAdded(nodeIds, tags.ids + newIds, tags.newNames.value(0));
        // Nodes come to be known behind their tags.
        return {!nodeIds.isEmpty(), {}, [this, reloaded = nodeIds + parents] {
                    m_providers.tags->tellNews();
                    m_host.reloadNodes(reloaded);
                }};
    };
    return tree && !addTagsWith(tags.newNames, *tree, PendingReloads::NodeReload,
                                EditBases::ofNodes(parents, tags.ids), use)
                        .isEmpty();
}

qint64 RecordEdits::addNodePath(const QVector<NodeStep> &steps, qint64 parentId)
{
    const QVector<qint64> parents = parentId > 0 ? QVector<qint64>{parentId} : QVector<qint64>();
    QVector<qint64> tagIds;
    QVector<qint64> nodeIds;
    for (const NodeStep &step : steps)
        tagIds.append(step.tagId);
    const auto add = [&] { return nodeIds = m_providers.browsTree->addPath(steps, parentId); };
    return addNodes(tagIds, parents, add) > 0 ? nodeIds.last() : 0;
}

qint64 RecordEdits::addNodesAbove(const QVector<qint64> &tagIds, qint64 nodeId)
{
    if (!m_records.nodes().map().contains(nodeId))
        return 0;
    return addNodes(tagIds, {nodeId}, [&] {
        return m_providers.browsTree->addNodesAbove(tagIds, true, false, parentOf(nodeId), nodeId);
    });
}

bool RecordEdits::removeNodes(const QVector<qint64> &nodeIds)
{
    return runRemoval(nodeIds, [&] { return RemovalPlans::subtrees(m_records.nodes().map(), nodeIds); });
}

bool RecordEdits::removeNodesKeepingChildren(const QVector<qint64> &nodeIds)
{
    return runRemoval(nodeIds,
                      [&] { return RemovalPlans::keepingChildren(m_records.nodes().map(), nodeIds); });
}

bool RecordEdits::runRemoval(const QVector<qint64> &nodeIds, const std::function<NodeRemovalPlan()> &makePlan)
{
    const auto remove = [&]() -> EditResult {
        const NodeRemovalPlan plan = makePlan();
        if (!m_host.mayTouch(EditBases::ofRemoval(plan)))
            return {};
        NodeRemover remover(m_constructor, *m_providers.browsTree);
        m_host.include(&remover);
        return {
            m_host.notes().nodesRemoved(plan) && remover.run(plan), {}, [this, plan] { tellRemoval(plan); }};
    };
    return m_host.runEdit(PendingReloads::NodeReload, EditBases::ofNodes(nodeIds), remove).isDone;
}

void RecordEdits::updateNode(qint64 nodeId, const QString &column, const QString &value)
{
    if (m_providers.browsTree)
        runEdit(PendingReloads::NodeReload, EditBases::ofNodes({nodeId}), [&] {
            return m_host.notes().nodeChanged(nodeId, column, value != QLatin1String("0")) &&
                   m_providers.browsTree->updateNode(nodeId, column, value);
        });
}

qint64 RecordEdits::addBrowsingTree(const QString &name)
{
    if (!m_providers.browsTree || !m_host.isNameGiven(name))
        return 0;
    qint64 treeId = 0;
    const auto add = [&] {
        treeId = m_providers.browsTree->addTree(name);
        return treeId > 0;
    };
    return runEdit(PendingReloads::NodeReload, {}, add) ? treeId : 0;
}

bool RecordEdits::removeBrowsingTree(qint64 treeId)
{
    return m_providers.browsTree && runEdit(PendingReloads::NodeReload, EditBases::ofTree(treeId),
                                            [&] { return m_providers.browsTree->removeTree(treeId); });
}

bool RecordEdits::renameBrowsingTree(qint64 treeId, const QString &name)
{
    return m_providers.browsTree && m_host.isNameGiven(name) &&
           runEdit(PendingReloads::NodeReload, EditBases::ofTree(treeId), [&] {
               return m_providers.browsTree->updateTree(treeId, QStringLiteral("tree_name"), name);
           });
}

bool RecordEdits::addRelationsOf(const QString &parentPath, const ChosenTags &tags)
{
    RelationTreeProvider *trees = m_providers.relationTree;
    const auto use = [&](const QVector<qint64> &newIds) {
        const QVector<qint64> fresh = freshBelow(parentPath, tags.ids) + newIds;
        const bool isNoted = m_host.notes().relationsAdded(EditBases::pathsBelow(parentPath, fresh), fresh,
                                                           tags.newNames.value(0));
        return EditResult{isNoted && trees->addPaths(parentPath, fresh), {}, {}};
    };
    return trees && !addTagsWith(tags.newNames, *trees, PendingReloads::NodeReload,
                                 EditBases::ofRelations(parentPath, tags.ids), use)
                         .isEmpty();
}

bool RecordEdits::addRelations(const QString &parentPath, const QVector<qint64> &tagIds)
{
    return m_providers.relationTree &&
           runEdit(PendingReloads::NodeReload, EditBases::ofRelations(parentPath, tagIds), [&] {
               const QVector<qint64> fresh = freshBelow(parentPath, tagIds);
               return m_host.notes().relationsAdded(EditBases::pathsBelow(parentPath, fresh), fresh) &&
                      m_providers.relationTree->addPaths(parentPath, fresh);
           });
}

QVector<qint64> RecordEdits::freshBelow(const QString &parentPath, const QVector<qint64> &tagIds) const
{
    QVector<qint64> fresh;
    // One path that is there already would fail the insert of all.
    for (const qint64 tagId : tagIds) {
        if (!m_records.relations().contains(EditBases::pathBelow(parentPath, tagId)))
            fresh.append(tagId);
    }
    return fresh;
}

void RecordEdits::removeRelations(const QStringList &paths)
{
    if (!m_providers.relationTree)
        return;
    EditBase base;
    base.relations = paths;
    runEdit(PendingReloads::NodeReload, base, [&] {
        EditBase below;
        below.relations = m_records.relations().withDescendants(paths);
        return m_host.mayTouch(below) && m_host.notes().relationsRemoved(below.relations) &&
               m_providers.relationTree->removePaths(below.relations);
    });
}

void RecordEdits::tellRemoval(const NodeRemovalPlan &plan)
{
    m_records.removeNodes(plan, [this] { m_providers.browsTree->tellNews(); });
}

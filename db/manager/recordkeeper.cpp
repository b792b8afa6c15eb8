#include "db/manager/recordkeeper.h"

#include "core/providers/browstreeprovider.h"
#include "core/providers/groupsprovider.h"
#include "core/providers/mainviewprovider.h"
#include "core/providers/noderemover.h"
#include "core/providers/relationtreeprovider.h"
#include "core/providers/tagsprovider.h"
#include "core/records/file.h"
#include "core/records/tbnode.h"
#include "db/caches/discardedfiles.h"
#include "db/manager/providers.h"

#include <QTimer>

#include <utility>

namespace {
/** More of them do not come in the middle of an edit. */
constexpr int mostHeld = 1000;
} // namespace

RecordKeeper::~RecordKeeper()
{
    qDeleteAll(m_discarded);
}

template <class List>
void RecordKeeper::discard(const List &records)
{
    if (m_discarded.isEmpty() && !records.isEmpty())
        QTimer::singleShot(0, this, [this] { qDeleteAll(std::exchange(m_discarded, {})); });
    for (QObject *record : records)
        m_discarded.append(record);
}

void RecordKeeper::follow(const DatabaseProviders &providers)
{
    const TagsProvider *tags = providers.tags;
    connect(tags, &TagsProvider::gotAllTagInfo, this, &RecordKeeper::gotAllTags);
    connect(tags, &TagsProvider::tagsUpdated, this, &RecordKeeper::gotTagsUpdated);
    connect(tags, &TagsProvider::tagsRemoved, this, &RecordKeeper::gotTagsRemoved);

    const GroupsProvider *groups = providers.groups;
    connect(groups, &GroupsProvider::gotAllGroupsInfo, this, &RecordKeeper::gotAllGroups);
    connect(groups, &GroupsProvider::groupsRemoved, this, &RecordKeeper::gotGroupsRemoved);
    connect(groups, &GroupsProvider::groupsRenamed, this, &RecordKeeper::gotGroupRenamed);
    connect(groups, &GroupsProvider::groupsUpdated, this, &RecordKeeper::gotGroupsUpdated);

    const BrowsTreeProvider *nodes = providers.browsTree;
    connect(nodes, &BrowsTreeProvider::gotAllNodesInfo, this, &RecordKeeper::gotAllBrowsNodes);
    connect(nodes, &BrowsTreeProvider::gotNodesInfo, this, &RecordKeeper::gotBrowsNodes);
    connect(nodes, &BrowsTreeProvider::nodesAdded, this, &RecordKeeper::gotAddedBrowsNodes);
    connect(nodes, &BrowsTreeProvider::nodesRemoved, this, &RecordKeeper::gotRemovesBrowsNodes);
    connect(nodes, &BrowsTreeProvider::nodeValueUpdated, this, &RecordKeeper::gotUpdatedBrowsNode);
    connect(nodes, &BrowsTreeProvider::nodeParentUpdated, this, &RecordKeeper::gotNodesParentChanged);

    const MainViewProvider *files = providers.mainView;
    connect(files, &MainViewProvider::gotAllFilesInfo, this, &RecordKeeper::gotAllFiles);
    connect(files, &MainViewProvider::filesUpdated, this, &RecordKeeper::gotUpdatedFiles);

    const RelationTreeProvider *relations = providers.relationTree;
    connect(relations, &RelationTreeProvider::gotAllNodesInfo, this, &RecordKeeper::gotAllRelationNodes);
    connect(relations, &RelationTreeProvider::nodesAdded, this, &RecordKeeper::gotRelationNodesAdded);
    connect(relations, &RelationTreeProvider::nodesRemoved, this, &RecordKeeper::gotRelationNodesRemoved);
}

void RecordKeeper::dropFiles()
{
    Map<qint64, File *> old;
    QSet<qint64> oldMissing;
    m_files.clear(old, oldMissing);
    if (!old.isEmpty())
        emit filesLoaded(m_files.map());
    DiscardedFiles::add(old, oldMissing);
    m_files.beginLoad();
    emit filesRead({});
}

void RecordKeeper::addFiles(std::vector<FileRecord> &records)
{
    emit filesRead(m_files.addRecords(records));
}

void RecordKeeper::dropUnreadFiles()
{
    m_files.abandonLoad();
    emit filesRead({});
}

void RecordKeeper::forgetTags(const QVector<qint64> &tagIds, const QVector<qint64> &unlinkedFileIds)
{
    m_groups.forgetTags(tagIds);
    const QVector<qint64> changed = m_files.forgetTags(unlinkedFileIds, tagIds);
    if (changed.isEmpty())
        return;
    emit fileTagsChanged(changed);
    emit fileTagsSettled();
}

void RecordKeeper::changeTag(qint64 tagId, bool isLinked, const QVector<qint64> &fileIds)
{
    const QVector<qint64> changed = m_files.changeTag(tagId, isLinked, fileIds);
    if (!changed.isEmpty())
        emit fileTagsChanged(changed);
}

void RecordKeeper::removeNodes(const NodeRemovalPlan &plan, const std::function<void()> &tellNews)
{
    if (!plan.removedNodeIds.isEmpty())
        emit aboutToRemoveNodes(plan.removedNodeIds);
    tellNews();
    if (!plan.removedNodeIds.isEmpty())
        emit removedNodes();
}

void RecordKeeper::gotAllTags(bool ok, const TableData &rows)
{
    m_loadState.note(LoadState::Tags, ok);
    if (!ok)
        return;
    const TableData old = m_tags.replaceAll(rows);
    emit tagsLoaded(m_tags.rows());
    qDeleteAll(old);
}

void RecordKeeper::gotTagsUpdated(bool ok, const TableData &rows)
{
    if (!ok)
        return;
    const TagCache::Merge merge = m_tags.merge(rows);
    if (!merge.newNames.isEmpty()) {
        const QVector<qint64> renamed = merge.newNames.keys().toVector();
        emit aboutToRenameTags(renamed);
        m_nodes.renameTags(merge.newNames);
        m_relations.renameTags(merge.newNames);
        emit tagsRenamed(renamed);
    }
    if (!merge.added.isEmpty())
        emit tagsAdded(merge.added);
}

void RecordKeeper::gotTagsRemoved(bool ok, const QVector<qint64> &tagIds)
{
    if (!ok)
        return;
    const TableData removed = m_tags.take(tagIds);
    emit tagsRemoved(tagIds);
    discard(removed);
}

void RecordKeeper::gotAllGroups(bool ok, const TableData &rows)
{
    m_loadState.note(LoadState::Groups, ok);
    if (ok) {
        m_groups.replaceAll(rows);
        emit groupsLoaded();
    }
    qDeleteAll(rows);
}

void RecordKeeper::gotGroupsUpdated(bool ok, const TableData &rows)
{
    if (ok) {
        emit aboutToUpdateGroups();
        m_groups.merge(rows);
        emit groupsUpdated();
    }
    qDeleteAll(rows);
}

void RecordKeeper::gotGroupsRemoved(bool ok, const QVector<qint64> &groupIds)
{
    if (ok)
        m_groups.remove(groupIds);
}

void RecordKeeper::gotGroupRenamed(bool ok, qlonglong groupId, const QString &name)
{
    if (ok)
        m_groups.rename(groupId, name);
}

void RecordKeeper::gotAllBrowsNodes(bool ok, const TableData &rows)
{
    m_loadState.note(LoadState::Nodes, ok);
    if (ok) {
        const QList<TBnode *> old = m_nodes.replaceAll(rows);
        emit browsingNodeLoaded(m_nodes.map());
        qDeleteAll(old);
    }
    qDeleteAll(rows);
}

void RecordKeeper::gotBrowsNodes(bool ok, const TableData &rows)
{
    gotAddedBrowsNodes(ok, rows);
}

void RecordKeeper::gotAddedBrowsNodes(bool ok, const TableData &rows)
{
    if (ok)
        emit addedBrowsingNodes(m_nodes.merge(rows));
    qDeleteAll(rows);
}

void RecordKeeper::gotRemovesBrowsNodes(const QVector<qint64> &nodeIds)
{
    const NodeCache::Removal removal = m_nodes.take(nodeIds);
    if (!removal.orphaned.isEmpty())
        emit addedBrowsingNodes(removal.orphaned);
    discard(removal.removed);
}

void RecordKeeper::gotUpdatedBrowsNode(qlonglong nodeId, const QString &column, const QString &value)
{
    m_nodes.setValue(nodeId, column, value);
}

void RecordKeeper::gotNodesParentChanged(const QVector<qint64> &nodeIds, qlonglong parentId)
{
    const Map<qint64, TBnode *> moved = m_nodes.move(nodeIds, parentId);
    if (!moved.isEmpty())
        emit addedBrowsingNodes(moved);
}

void RecordKeeper::gotAllFiles(bool ok, const TableData &rows)
{
    if (!ok) {
        m_loadState.note(LoadState::Files, false);
        dropUnreadFiles();
        return;
    }
    if (!rows.isEmpty()) {
        m_files.addSlice(rows);
        return;
    }
    m_loadState.note(LoadState::Files, true);
    const QList<File *> old = m_files.finishLoad();
    emit filesLoaded(m_files.map());
    DiscardedFiles::add(old);
}

void RecordKeeper::gotUpdatedFiles(bool ok, const TableData &rows)
{
    if (!ok)
        return;
    const FileCache::Merge merge = m_files.merge(rows);
    if (!merge.changed.isEmpty())
        emit filesChanged(merge.changed);
    if (!merge.added.isEmpty())
        emit filesAdded(merge.added);
}

void RecordKeeper::gotFilesRemoved(const QVector<qint64> &fileIds)
{
    const QList<File *> removed = m_files.take(fileIds);
    emit filesRemoved(fileIds);
    if (removed.size() > mostHeld)
        DiscardedFiles::add(removed);
    else
        discard(removed);
}

void RecordKeeper::gotAllRelationNodes(bool ok, const TableData &rows)
{
    m_loadState.note(LoadState::Relations, ok);
    if (ok) {
        QStringList paths;
        paths.reserve(rows.size());
        for (const TableRowData *row : rows)
            paths.append(row->value(QStringLiteral("relationship_path")).toString());
        const QList<TRnode *> old =
            m_relations.replaceAll(paths, [this](qint64 tagId) { return m_tags.name(tagId); });
        emit relatshipsNodeLoaded(m_relations.nodes());
        qDeleteAll(old);
    }
    qDeleteAll(rows);
}

void RecordKeeper::gotRelationNodesAdded(bool ok, const QStringList &paths)
{
    if (!ok)
        return;
    const RelationCache::Nodes added =
        m_relations.add(paths, [this](qint64 tagId) { return m_tags.name(tagId); });
    if (!added.isEmpty())
        emit addedRelatshipsNodes(added);
}

void RecordKeeper::gotRelationNodesRemoved(bool ok, const QStringList &paths)
{
    if (ok)
        discard(m_relations.take(paths));
}

void RecordKeeper::gotFoundFileIds(const QVector<qint64> &fileIds)
{
    const QVector<qint64> changed = m_files.setMissing(fileIds, false);
    if (!changed.isEmpty())
        emit updateMissedFiles(changed);
}

void RecordKeeper::gotMissedFileIds(const QVector<qint64> &fileIds)
{
    const QVector<qint64> changed = m_files.setMissing(fileIds, true);
    if (!changed.isEmpty())
        emit updateMissedFiles(changed);
}

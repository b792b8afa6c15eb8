// The answers of the providers: each goes into its cache, and then the news goes out. Rows that a signal
// hands over are freed here, except for those of file selects, which are lent.
#include "core/providers/browstreeprovider.h"
#include "core/providers/noderemover.h"
#include "core/records/tbnode.h"
#include "db/manager/databasemanger.h"
#include "fileops/provider/thumbnailcache.h"

void DatabaseManger::gotAllTags(bool ok, const TableData &rows)
{
    m_loadState.note(LoadState::Tags, ok);
    if (!ok)
        return;
    const TableData old = m_tags.replaceAll(rows);
    emit tagsLoaded(m_tags.rows());
    qDeleteAll(old);
}

void DatabaseManger::gotTagsUpdated(bool ok, const TableData &rows)
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

void DatabaseManger::gotTagsRemoved(bool ok, const QVector<qint64> &tagIds)
{
    if (!ok)
        return;
    const TableData removed = m_tags.take(tagIds);
    emit tagsRemoved(tagIds);
    qDeleteAll(removed);
}

void DatabaseManger::gotAllGroups(bool ok, const TableData &rows)
{
    m_loadState.note(LoadState::Groups, ok);
    if (ok) {
        m_groups.replaceAll(rows);
        emit groupsLoaded();
    }
    qDeleteAll(rows);
}

void DatabaseManger::gotGroupsUpdated(bool ok, const TableData &rows)
{
    if (ok) {
        emit aboutToUpdateGroups();
        m_groups.merge(rows);
        emit groupsUpdated();
    }
    qDeleteAll(rows);
}

void DatabaseManger::gotGroupsRemoved(bool ok, const QVector<qint64> &groupIds)
{
    if (ok)
        m_groups.remove(groupIds);
}

void DatabaseManger::gotGroupRenamed(bool ok, qlonglong groupId, const QString &name)
{
    if (ok)
        m_groups.rename(groupId, name);
}

void DatabaseManger::gotAllBrowsNodes(bool ok, const TableData &rows)
{
    m_loadState.note(LoadState::Nodes, ok);
    if (ok) {
        const QList<TBnode *> old = m_nodes.replaceAll(rows);
        emit browsingNodeLoaded(m_nodes.map());
        qDeleteAll(old);
    }
    qDeleteAll(rows);
}

void DatabaseManger::gotBrowsNodes(bool ok, const TableData &rows)
{
    gotAddedBrowsNodes(ok, rows);
}

void DatabaseManger::gotAddedBrowsNodes(bool ok, const TableData &rows)
{
    if (ok)
        emit addedBrowsingNodes(m_nodes.merge(rows));
    qDeleteAll(rows);
}

void DatabaseManger::gotRemovesBrowsNodes(const QVector<qint64> &nodeIds)
{
    const NodeCache::Removal removal = m_nodes.take(nodeIds);
    if (!removal.orphaned.isEmpty())
        emit addedBrowsingNodes(removal.orphaned);
    qDeleteAll(removal.removed);
}

void DatabaseManger::gotUpdatedBrowsNode(qlonglong nodeId, const QString &column, const QString &value)
{
    m_nodes.setValue(nodeId, column, value);
}

void DatabaseManger::gotNodesParentChanged(const QVector<qint64> &nodeIds, qlonglong parentId)
{
    const Map<qint64, TBnode *> moved = m_nodes.move(nodeIds, parentId);
    if (!moved.isEmpty())
        emit addedBrowsingNodes(moved);
}

void DatabaseManger::tellRemoval(const NodeRemovalPlan &plan)
{
    if (!plan.removedNodeIds.isEmpty())
        emit aboutToRemoveNodes(plan.removedNodeIds);
    m_providers.browsTree->tellNews();
    if (!plan.removedNodeIds.isEmpty())
        emit removedNodes();
}

void DatabaseManger::gotAllFiles(bool ok, const TableData &rows)
{
    if (!ok) {
        m_loadState.note(LoadState::Files, false);
        m_files.abandonLoad();
        return;
    }
    if (!rows.isEmpty()) {
        m_files.addSlice(rows);
        return;
    }
    m_loadState.note(LoadState::Files, true);
    const QList<File *> old = m_files.finishLoad();
    emit filesLoaded(m_files.map());
    m_discardedFiles.add(old);
}

void DatabaseManger::gotUpdatedFiles(bool ok, const TableData &rows)
{
    if (!ok)
        return;
    const FileCache::Merge merge = m_files.merge(rows);
    if (!merge.changed.isEmpty())
        emit filesChanged(merge.changed);
    if (!merge.added.isEmpty())
        emit filesAdded(merge.added);
}

void DatabaseManger::gotFilesRemoved(const QVector<qint64> &fileIds)
{
    const QList<File *> removed = m_files.take(fileIds);
    m_thumbnailCache->remove(fileIds);
    emit filesRemoved(fileIds);
    m_discardedFiles.add(removed);
}

void DatabaseManger::gotAllRelationNodes(bool ok, const TableData &rows)
{
    m_loadState.note(LoadState::Relations, ok);
    if (ok) {
        QStringList paths;
        paths.reserve(rows.size());
        for (const TableRowData *row : rows)
            paths.append(row->value(QStringLiteral("relationship_path")).toString());
        const QList<TRnode *> old =
            m_relations.replaceAll(paths, [this](qint64 tagId) { return tagName(tagId); });
        emit relatshipsNodeLoaded(m_relations.nodes());
        qDeleteAll(old);
    }
    qDeleteAll(rows);
}

void DatabaseManger::gotRelationNodesAdded(bool ok, const QStringList &paths)
{
    if (!ok)
        return;
    const RelationCache::Nodes added =
        m_relations.add(paths, [this](qint64 tagId) { return tagName(tagId); });
    if (!added.isEmpty())
        emit addedRelatshipsNodes(added);
}

void DatabaseManger::gotRelationNodesRemoved(bool ok, const QStringList &paths)
{
    if (ok)
        qDeleteAll(m_relations.take(paths));
}

void DatabaseManger::gotFoundFileIds(const QVector<qint64> &fileIds)
{
    const QVector<qint64> changed = m_files.setMissing(fileIds, false);
    if (!changed.isEmpty())
        emit updateMissedFiles(changed);
}

void DatabaseManger::gotMissedFileIds(const QVector<qint64> &fileIds)
{
    const QVector<qint64> changed = m_files.setMissing(fileIds, true);
    if (!changed.isEmpty())
        emit updateMissedFiles(changed);
}

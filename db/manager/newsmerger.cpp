#include "db/manager/newsmerger.h"

#include "core/providers/browstreeprovider.h"
#include "core/providers/groupsprovider.h"
#include "core/providers/mainviewprovider.h"
#include "core/providers/noderemover.h"
#include "core/providers/relationtreeprovider.h"
#include "core/providers/tagsprovider.h"
#include "core/records/file.h"
#include "core/records/tbnode.h"
#include "db/manager/recordkeeper.h"
#include "fileops/provider/thumbnailcache.h"

#include <algorithm>

namespace {
// Each slice makes the models look at all files once more, and holds the window meanwhile.
constexpr int filesPerSlice = 1000;

QVector<qint64> sorted(const QSet<qint64> &ids)
{
    QVector<qint64> list(ids.cbegin(), ids.cend());
    std::sort(list.begin(), list.end());
    return list;
}

/** The keys in a column of rows. */
QSet<qint64> keysIn(const TableData &rows, const QString &column)
{
    QSet<qint64> keys;
    for (const TableRowData *row : rows)
        keys.insert(row->value(column).toLongLong());
    return keys;
}

/** Those that were asked for, are known and are not there any more. */
template <class IsKnown>
QVector<qint64> gone(const QSet<qint64> &asked, const QSet<qint64> &there, IsKnown isKnown)
{
    QVector<qint64> ids;
    for (const qint64 id : asked) {
        if (!there.contains(id) && isKnown(id))
            ids.append(id);
    }
    std::sort(ids.begin(), ids.end());
    return ids;
}
} // namespace

void NewsMerger::clear()
{
    m_pending = {};
}

bool NewsMerger::read()
{
    m_asked = {};
    m_asked.tags = m_pending.tags;
    m_asked.groups = m_pending.groups;
    m_asked.nodes = m_pending.nodes;
    m_asked.relations = m_pending.relations;
    m_asked.thumbnails = m_pending.thumbnails;
    m_asked.trees = m_pending.trees;
    const bool isRead = m_providers.tags->readTags(sorted(m_asked.tags), m_tagRows) &&
                        m_providers.groups->readGroups(sorted(m_asked.groups), m_groupRows) &&
                        m_providers.browsTree->readNodes(sorted(m_asked.nodes), m_nodeRows) &&
                        m_providers.relationTree->readPaths(m_asked.relations.values(), m_paths) &&
                        readFiles();
    if (!isRead) {
        for (TableData *rows : {&m_tagRows, &m_groupRows, &m_nodeRows, &m_fileRows})
            freeRows(*rows);
        m_paths.clear();
        return false;
    }
    const QSet<qint64> waiting = m_pending.files - m_asked.files;
    m_pending = {};
    m_pending.files = waiting;
    return true;
}

bool NewsMerger::readFiles()
{
    QVector<qint64> ids;
    if (!m_providers.mainView->readFilesOfPaths(sorted(m_pending.paths), ids))
        return false;
    for (const qint64 id : qAsConst(ids))
        m_pending.files.insert(id);
    m_pending.paths.clear();
    ids = sorted(m_pending.files).mid(0, filesPerSlice);
    for (const qint64 id : qAsConst(ids))
        m_asked.files.insert(id);
    return ids.isEmpty() || m_providers.mainView->readFiles(ids, m_fileRows);
}

void NewsMerger::merge()
{
    m_haveTreesChanged = !m_asked.trees.isEmpty();
    m_count.trees += m_asked.trees.size();
    mergeTags();
    mergeGroups();
    mergeNodes();
    mergeRelations();
    mergeFiles();
    mergeThumbnails();
    // Last, as all of the others may name a tag.
    const QVector<qint64> tags =
        gone(m_asked.tags, {}, [this](qint64 id) { return m_records.tags().row(id) != nullptr; });
    if (!tags.isEmpty())
        m_records.gotTagsRemoved(true, tags);
}

NewsCount NewsMerger::takeCount()
{
    const NewsCount count = m_count;
    m_count = {};
    return count;
}

void NewsMerger::mergeTags()
{
    m_count.tags += m_asked.tags.size();
    // From then on the records own the rows.
    const QSet<qint64> there = keysIn(m_tagRows, QStringLiteral("tag_id"));
    if (!m_tagRows.isEmpty())
        m_records.gotTagsUpdated(true, m_tagRows);
    m_tagRows.clear();
    m_asked.tags -= there;
}

void NewsMerger::mergeGroups()
{
    m_count.groups += m_asked.groups.size();
    const QVector<qint64> groups = gone(m_asked.groups, keysIn(m_groupRows, QStringLiteral("tag_group_id")),
                                        [this](qint64 id) { return m_records.groups().map().contains(id); });
    if (!m_groupRows.isEmpty())
        m_records.gotGroupsUpdated(true, m_groupRows);
    m_groupRows.clear();
    if (!groups.isEmpty())
        m_records.gotGroupsRemoved(true, groups);
}

void NewsMerger::mergeNodes()
{
    // Nodes of other trees are not kept.
    TableData shown;
    for (TableRowData *row : qAsConst(m_nodeRows)) {
        const QVariant tree = row->value(QStringLiteral("browsing_tree_id"));
        const bool isShown = tree.isNull() || tree.toLongLong() == m_providers.browsTree->currentTree();
        if (isShown)
            shown.append(row);
        else
            delete row;
    }
    m_nodeRows.clear();
    const QSet<qint64> there = keysIn(shown, QStringLiteral("node_id"));
    NodeRemovalPlan plan;
    plan.removedNodeIds =
        gone(m_asked.nodes, there, [this](qint64 id) { return m_records.nodes().map().contains(id); });
    m_count.nodes += there.size() + plan.removedNodeIds.size();
    if (!shown.isEmpty())
        m_records.gotBrowsNodes(true, shown);
    if (!plan.removedNodeIds.isEmpty())
        m_records.removeNodes(plan, [&] { m_records.gotRemovesBrowsNodes(plan.removedNodeIds); });
}

void NewsMerger::mergeRelations()
{
    m_count.relations += m_asked.relations.size();
    const QSet<QString> there(m_paths.cbegin(), m_paths.cend());
    QStringList removed;
    for (const QString &path : qAsConst(m_asked.relations)) {
        if (!there.contains(path) && m_records.relations().contains(path))
            removed.append(path);
    }
    if (!removed.isEmpty())
        m_records.gotRelationNodesRemoved(true, removed);
    if (!m_paths.isEmpty())
        m_records.gotRelationNodesAdded(true, m_paths);
    m_paths.clear();
}

void NewsMerger::mergeFiles()
{
    m_count.files += m_asked.files.size();
    const QVector<qint64> files = gone(m_asked.files, keysIn(m_fileRows, QStringLiteral("file_id")),
                                       [this](qint64 id) { return m_records.files().map().contains(id); });
    if (!m_fileRows.isEmpty())
        m_records.gotUpdatedFiles(true, m_fileRows);
    freeRows(m_fileRows);
    if (files.isEmpty())
        return;
    m_thumbnails.remove(files);
    m_records.gotFilesRemoved(files);
}

void NewsMerger::mergeThumbnails()
{
    if (m_asked.thumbnails.isEmpty())
        return;
    QVector<qint64> files;
    const QList<qint64> held = m_thumbnails.heldFiles();
    for (const qint64 id : held) {
        const File *file = m_records.files().map().value(id);
        if (file && m_asked.thumbnails.contains(file->thumbnailId()))
            files.append(id);
    }
    m_thumbnails.reloadHeld(files);
}

#pragma once

#include "core/records/recordtypes.h"
#include "db/caches/filecache.h"
#include "db/caches/groupcache.h"
#include "db/caches/nodecache.h"
#include "db/caches/relationcache.h"
#include "db/caches/tagcache.h"
#include "db/manager/loadstate.h"
#include "db/sql/tabledata.h"

#include <QObject>

#include <functional>

struct DatabaseProviders;
struct NodeRemovalPlan;

/**
 * Keeps the records of an open database: each answer of a provider is merged into the cache of its domain,
 * and then the news goes out. Rows that an answer hands over are freed here, except for those of file
 * selects, which are lent. Owned by the manager, whose signals pass the news on. GUI thread.
 */
class RecordKeeper : public QObject
{
    Q_OBJECT

public:
    ~RecordKeeper() override;
    /** Listens to the providers of records. */
    void follow(const DatabaseProviders &providers);

    TagCache &tags() { return m_tags; }
    const TagCache &tags() const { return m_tags; }
    GroupCache &groups() { return m_groups; }
    NodeCache &nodes() { return m_nodes; }
    RelationCache &relations() { return m_relations; }
    const RelationCache &relations() const { return m_relations; }
    FileCache &files() { return m_files; }
    const FileCache &files() const { return m_files; }
    /** Which of them are whole. */
    LoadState &loadState() { return m_loadState; }
    const LoadState &loadState() const { return m_loadState; }

    /** Before all files are read: old records and new ones together would need twice the memory. */
    void dropFiles();
    /** The next of all files, as they are read; gotAllFiles() ends it, with an empty table. */
    void addFiles(std::vector<FileRecord> &records);
    /** Nobody wants the rest of them. */
    void dropUnreadFiles();
    /** Tags are gone from the database, and from these files there. */
    void forgetTags(const QVector<qint64> &tagIds, const QVector<qint64> &unlinkedFileIds);
    /** These files, by rising ids, have the tag now, or have it no more; settleTags() follows the last. */
    void changeTag(qint64 tagId, bool isLinked, const QVector<qint64> &fileIds);
    void tellMerge(qint64 target, const QVector<qint64> &others) { emit tagsMerged(target, others); }
    void settleTags() { emit fileTagsSettled(); }
    /** What tellNews() brings is told as one removal. */
    void removeNodes(const NodeRemovalPlan &plan, const std::function<void()> &tellNews);

public slots:
    void gotAllTags(bool ok, const TableData &rows);
    void gotTagsUpdated(bool ok, const TableData &rows);
    void gotTagsRemoved(bool ok, const QVector<qint64> &tagIds);
    void gotAllGroups(bool ok, const TableData &rows);
    void gotGroupsRemoved(bool ok, const QVector<qint64> &groupIds);
    void gotGroupRenamed(bool ok, qlonglong groupId, const QString &name);
    void gotGroupsUpdated(bool ok, const TableData &rows);
    void gotAllBrowsNodes(bool ok, const TableData &rows);
    void gotBrowsNodes(bool ok, const TableData &rows);
    void gotAddedBrowsNodes(bool ok, const TableData &rows);
    void gotRemovesBrowsNodes(const QVector<qint64> &nodeIds);
    void gotUpdatedBrowsNode(qlonglong nodeId, const QString &column, const QString &value);
    void gotNodesParentChanged(const QVector<qint64> &nodeIds, qlonglong parentId);
    void gotAllFiles(bool ok, const TableData &rows);
    void gotUpdatedFiles(bool ok, const TableData &rows);
    void gotFilesRemoved(const QVector<qint64> &fileIds);
    void gotAllRelationNodes(bool ok, const TableData &rows);
    void gotRelationNodesAdded(bool ok, const QStringList &paths);
    void gotRelationNodesRemoved(bool ok, const QStringList &paths);
    void gotFoundFileIds(const QVector<qint64> &fileIds);
    void gotMissedFileIds(const QVector<qint64> &fileIds);

signals:
    // As the manager tells them on.
    void tagsLoaded(TableData tags);
    void tagsAdded(TableData tags);
    void tagsRemoved(QVector<qint64> tagIds);
    void tagsMerged(qlonglong target, QVector<qint64> others);
    void aboutToRenameTags(QVector<qint64> tagIds);
    void tagsRenamed(QVector<qint64> tagIds);
    void groupsLoaded();
    void aboutToUpdateGroups();
    void groupsUpdated();
    void browsingNodeLoaded(const Map<qint64, TBnode *> &nodes);
    void addedBrowsingNodes(const Map<qint64, TBnode *> &nodes);
    void aboutToRemoveNodes(const QVector<qint64> &nodeIds);
    void removedNodes();
    /** Some of all files, which filesLoaded() will tell of; an empty list when a reading begins. */
    void filesRead(const QVector<File *> &files);
    void filesLoaded(const Map<qint64, File *> &files);
    void filesAdded(const Map<qint64, File *> &files);
    void filesChanged(QVector<qint64> fileIds);
    void filesRemoved(QVector<qint64> fileIds);
    /** Some of those whose tags change; fileTagsSettled() tells that it is over. */
    void fileTagsChanged(const QVector<qint64> &fileIds);
    void fileTagsSettled();
    void updateMissedFiles(QVector<qint64> fileIds);
    void relatshipsNodeLoaded(const Vector<QPair<QString, TRnode *>> &nodes);
    void addedRelatshipsNodes(const Vector<QPair<QString, TRnode *>> &nodes);

private:
    /** What is removed while somebody edits may be in his hands still. */
    template <class List>
    void discard(const List &records);

    TagCache m_tags;
    GroupCache m_groups;
    NodeCache m_nodes;
    RelationCache m_relations;
    FileCache m_files;
    QVector<QObject *> m_discarded; ///< until the event loop turns
    LoadState m_loadState;
};

#pragma once

#include "core/providers/foreignchanges.h"
#include "core/records/chosentags.h"
#include "core/records/nodestep.h"
#include "db/manager/editresult.h"
#include "db/manager/providers.h"

#include <QMap>
#include <QString>
#include <QStringList>
#include <QVector>

#include <functional>

class AbstractQueryConstructor;
class BaseDBProvider;
class EditNotes;
class RecordKeeper;
struct NodeRemovalPlan;

/** What RecordEdits asks of the manager that owns it. GUI thread. */
class RecordEditsHost
{
public:
    virtual ~RecordEditsHost() = default;

    /** Both are false after a word to the user. */
    virtual bool isNameGiven(const QString &name) = 0;
    virtual bool isStorable(const QString &text) = 0;
    /**
     * Runs an edit when the records that it rests on are those of the database, as one transaction where
     * others write too; then it may run twice. The news go out when it is through.
     */
    virtual EditResult runEdit(int reload, const EditBase &base, const std::function<EditResult()> &edit) = 0;
    /** Within an edit: whether it may go on, as it turns out to rest on this, too. */
    virtual bool mayTouch(const EditBase &base) = 0;
    /** Within an edit: a provider of its own takes part. */
    virtual void include(BaseDBProvider *provider) = 0;
    virtual void reloadNodes(const QVector<qint64> &nodeIds) = 0;
    virtual void reloadLater() = 0;
    /** Within an edit: what is noted there can be taken back. */
    virtual EditNotes notes() = 0;
};

/**
 * The edits of tags, groups, nodes, trees and relationships, which are done, and merged into the records,
 * when a call returns; DatabaseManger says what each does. Owned by it, GUI thread. An edit that the host
 * does not allow is dropped.
 */
class RecordEdits
{
public:
    /** Host and records must outlive this, the providers each call. */
    RecordEdits(RecordEditsHost &host, RecordKeeper &records) : m_host(host), m_records(records) {}
    void setProviders(const DatabaseProviders &providers, const AbstractQueryConstructor *constructor);

    qint64 addTag(const QString &name, const QVector<qint64> &fileIds);
    qint64 addTagToGroup(const QString &name, qint64 groupId);
    void renameTag(qint64 tagId, const QString &name);
    void changeTagDescription(qint64 tagId, const QString &text);
    bool removeTags(const QVector<qint64> &tagIds);
    bool tagFiles(const QVector<qint64> &fileIds, const ChosenTags &tags);

    qint64 addGroup(const QString &name, bool visible);
    void renameGroup(qint64 groupId, const QString &name);
    void removeGroups(const QVector<qint64> &groupIds);
    bool setGroupTags(const QMap<qint64, QVector<qint64>> &tagsOfGroups);

    qint64 addNodeBelow(qint64 tagId, qint64 parentId);
    qint64 addNodeAbove(qint64 tagId, qint64 nodeId);
    qint64 addNodesBelow(const QVector<qint64> &tagIds, qint64 parentId);
    /** One below the other; gives the id of the last. */
    qint64 addNodePath(const QVector<NodeStep> &steps, qint64 parentId);
    qint64 addNodesAbove(const QVector<qint64> &tagIds, qint64 nodeId);
    bool addNodesOf(const ChosenTags &tags, qint64 parentId);
    bool removeNodes(const QVector<qint64> &nodeIds);
    bool removeNodesKeepingChildren(const QVector<qint64> &nodeIds);
    void updateNode(qint64 nodeId, const QString &column, const QString &value);

    qint64 addBrowsingTree(const QString &name);
    bool removeBrowsingTree(qint64 treeId);
    bool renameBrowsingTree(qint64 treeId, const QString &name);

    bool addRelations(const QString &parentPath, const QVector<qint64> &tagIds);
    bool addRelationsOf(const QString &parentPath, const ChosenTags &tags);
    void removeRelations(const QStringList &paths);

private:
    bool runEdit(int reload, const EditBase &base, const std::function<bool()> &edit);
    void updateTag(qint64 tagId, const QString &column, const QString &value);
    /** New tags and what is made with them, in one transaction; their ids, or none when it failed. */
    QVector<qint64> addTagsWith(const QStringList &names, BaseDBProvider &user, int reload,
                                const EditBase &base,
                                const std::function<EditResult(const QVector<qint64> &)> &use);
    QVector<qint64> knownTags(const QVector<qint64> &tagIds) const;
    /** Those that do not stand below the path yet. */
    QVector<qint64> freshBelow(const QString &parentPath, const QVector<qint64> &tagIds) const;
    qint64 parentOf(qint64 nodeId) const;
    qint64 addNodes(const QVector<qint64> &tagIds, const QVector<qint64> &nodeIds,
                    const std::function<QVector<qint64>()> &add);
    bool runRemoval(const QVector<qint64> &nodeIds, const std::function<NodeRemovalPlan()> &makePlan);
    void tellRemoval(const NodeRemovalPlan &plan);

    RecordEditsHost &m_host;
    RecordKeeper &m_records;
    DatabaseProviders m_providers;
    const AbstractQueryConstructor *m_constructor = nullptr;
};

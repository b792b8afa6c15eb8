#pragma once

#include "db/sql/basedbprovider.h"

/** Which tags leave a group and which join it. */
struct GroupTagChange
{
    qint64 groupId = 0;
    QVector<qint64> removedTagIds;
    QVector<qint64> addedTagIds;
};

/**
 * The statements of the tag groups. GUI thread, default connection; each operation is over, and its signal
 * out, when it returns. What takes more than one statement is one transaction.
 */
class GroupsProvider : public BaseDBProvider
{
    Q_OBJECT

public:
    explicit GroupsProvider(const AbstractQueryConstructor *constructor, QObject *parent = nullptr);

    /** Adds a row and emits groupsUpdated with it. Gives the new id, 0 on failure. */
    virtual qint64 addGroup(const QString &name);

    /** One row a tag in a group; a group without tags comes once, with a null tag_id. */
    void loadAllGroups();
    void loadGroups(const QVector<qint64> &ids);
    /** Appends the rows of those that are there, which the holder of `rows` owns, also after a failure. */
    bool readGroups(const QVector<qint64> &ids, TableData &rows);

    bool renameGroup(qint64 id, const QString &name);

    /** Removes the groups and their links to tags; the tags stay. */
    bool removeGroups(const QVector<qint64> &ids);

    /** Takes tags out of a group and puts others in; tags that are in it already are left as they are. */
    bool setGroupTags(qint64 groupId, const QVector<qint64> &removedTagIds,
                      const QVector<qint64> &addedTagIds);
    /** The same for several groups, all or none. */
    bool setGroupTags(const QVector<GroupTagChange> &changes);
    /** Puts tags that it does not have into a group. For whoever has a transaction of his own. */
    bool addTagLinks(qint64 groupId, const QVector<qint64> &tagIds);

signals:
    void gotAllGroupsInfo(bool ok, const TableData &table);
    void groupsRemoved(bool ok, const QVector<qint64> &ids);
    void groupsRenamed(bool ok, qlonglong id, const QString &name);
    void groupsUpdated(bool ok, const TableData &table);

protected:
    /** These will be read when the edit that goes on is through. */
    void expectGroups(const QVector<qint64> &ids);
    QString selectText() const;
    /** The insert of a new group without its end, so that a dialect may add to it. */
    QString insertText(const QString &name) const;

private:
    QString groupsText(const QVector<qint64> &ids) const;
    bool runRemoval(const QVector<qint64> &ids);
    bool runTagChange(const GroupTagChange &change);
    bool removeTagLinks(qint64 groupId, const QVector<qint64> &tagIds);
};

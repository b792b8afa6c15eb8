#pragma once

#include "core/records/map.h"
#include "db/sql/tabledata.h"

#include <QVector>

class GroupItem;

/**
 * The tag groups by id, owned. Models hold the map itself and listen to it, so it stays the same object as
 * long as the manager lives; a group is complete with its tags before the map tells of it. GUI thread.
 */
class GroupCache
{
public:
    GroupCache() = default;
    ~GroupCache();
    GroupCache(const GroupCache &) = delete;
    GroupCache &operator=(const GroupCache &) = delete;

    Map<qint64, GroupItem *> &map() { return m_groups; }
    const Map<qint64, GroupItem *> &map() const { return m_groups; }

    struct GroupRow
    {
        QString name;
        QVector<qint64> tags;
    };

    /**
     * The rows of both come one for each tag of a group and stay the caller's. Groups that stay keep their
     * objects, and with them their tabs.
     */
    void replaceAll(const TableData &rows);
    void merge(const TableData &rows);

    void rename(qint64 groupId, const QString &name);
    void remove(const QVector<qint64> &groupIds);
    /** Takes tags out of every group. */
    void forgetTags(const QVector<qint64> &tagIds);

private:
    void mergeGroups(const QMap<qint64, GroupRow> &groups);

    Map<qint64, GroupItem *> m_groups;
};

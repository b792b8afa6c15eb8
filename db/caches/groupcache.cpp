#include "db/caches/groupcache.h"

#include "core/records/groupitem.h"
#include "db/sql/longtext.h"

#include <QMap>
#include <QSet>

#include <algorithm>

namespace {
QMap<qint64, GroupCache::GroupRow> gathered(const TableData &rows)
{
    QMap<qint64, GroupCache::GroupRow> groups;
    for (const TableRowData *row : rows) {
        GroupCache::GroupRow &group = groups[row->value(QStringLiteral("tag_group_id")).toLongLong()];
        group.name = LongText::kept(row->value(QStringLiteral("name")).toString());
        const qint64 tagId = row->value(QStringLiteral("tag_id")).toLongLong();
        if (tagId > 0)
            group.tags.append(tagId);
    }
    return groups;
}
} // namespace

GroupCache::~GroupCache()
{
    qDeleteAll(m_groups.items());
}

void GroupCache::replaceAll(const TableData &rows)
{
    const QMap<qint64, GroupRow> groups = gathered(rows);
    QVector<qint64> gone;
    for (auto it = m_groups.begin(); it != m_groups.end(); ++it) {
        if (!groups.contains(it.key()))
            gone.append(it.key());
    }
    // Items that stay keep their identity: docks follow them by pointer.
    remove(gone);
    mergeGroups(groups);
}

void GroupCache::merge(const TableData &rows)
{
    mergeGroups(gathered(rows));
}

void GroupCache::mergeGroups(const QMap<qint64, GroupRow> &groups)
{
    for (auto it = groups.cbegin(); it != groups.cend(); ++it) {
        GroupItem *known = m_groups.value(it.key());
        if (known) {
            known->setName(it->name);
            known->setTags(it->tags);
        } else {
            // Hidden at first; the settings say which have a tab.
            m_groups.insert(it.key(), new GroupItem(it.key(), it->name, it->tags, false));
        }
    }
}

void GroupCache::rename(qint64 groupId, const QString &name)
{
    GroupItem *group = m_groups.value(groupId);
    if (group)
        group->setName(name);
}

void GroupCache::remove(const QVector<qint64> &groupIds)
{
    for (const qint64 groupId : groupIds) {
        // The item goes last: whoever hears of its removal may still look at it.
        GroupItem *group = m_groups.take(groupId);
        if (group)
            group->deleteLater();
    }
}

void GroupCache::forgetTags(const QVector<qint64> &tagIds)
{
    const QSet<qint64> gone(tagIds.cbegin(), tagIds.cend());
    for (GroupItem *group : qAsConst(m_groups)) {
        QVector<qint64> tags = group->tags();
        const auto isGone = [&gone](qint64 tagId) { return gone.contains(tagId); };
        tags.erase(std::remove_if(tags.begin(), tags.end(), isGone), tags.end());
        group->setTags(tags);
    }
}

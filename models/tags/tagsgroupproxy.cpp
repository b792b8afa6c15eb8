#include "models/tags/tagsgroupproxy.h"

#include "models/tags/tagroles.h"

TagsGroupProxy::TagsGroupProxy(QObject *parent) : QSortFilterProxyModel(parent) {}

// Both setters use invalidate(): invalidateFilter() tells of every run of rows by itself, which the proxy
// above answers by renumbering all of its own.

void TagsGroupProxy::setGroupId(qint64 groupId)
{
    if (m_groupId == groupId)
        return;
    m_groupId = groupId;
    invalidate();
}

void TagsGroupProxy::setDTagIds(const QVector<qint64> &tagIds)
{
    m_dTagIds = tagIds;
    QSet<qint64> set(tagIds.begin(), tagIds.end());
    if (set == m_dTagSet)
        return;
    m_dTagSet.swap(set);
    if (m_groupId == DTagsTab)
        invalidate();
}

bool TagsGroupProxy::filterAcceptsRow(int sourceRow, const QModelIndex &sourceParent) const
{
    if (m_groupId == AllTagsTab)
        return true;
    const QModelIndex index = sourceModel()->index(sourceRow, 0, sourceParent);
    if (m_groupId == DTagsTab)
        return m_dTagSet.contains(index.data(TagRoles::TagId).toLongLong());
    const QVariant groups = index.data(TagRoles::Groups);
    // A source without groups shows nothing in the tab of one.
    return groups.userType() == qMetaTypeId<QVector<qint64>>() &&
           groups.value<QVector<qint64>>().contains(m_groupId);
}

// The rows of the table of tags: how they come and go, and how they follow the raw rows and the groups.
#include "db/manager/databasemanger.h"
#include "models/tags/tagstablemodel.h"

#include <QDebug>
#include <QSet>

namespace {
const QString idColumn = QStringLiteral("tag_id");
const QString nameColumn = QStringLiteral("tag_name");
const QString descriptionColumn = QStringLiteral("tag_description");
const QString dateColumn = QStringLiteral("creation_date");

// More separate runs of rows than this are removed by one change of layout.
constexpr int mostRemovals = 100;

qint64 idOf(const TableRowData &row)
{
    return row.value(idColumn).toLongLong();
}
} // namespace

void TagsTableModel::rowNameChanged(qlonglong tagId, const QString &name)
{
    if (TagItem *item = itemOf(tagId)) {
        item->setName(name);
        announceRow(tagId);
    }
}

void TagsTableModel::rowDescriptionChanged(qlonglong tagId, const QString &description)
{
    if (TagItem *item = itemOf(tagId)) {
        item->setDescription(description);
        announceRow(tagId);
    }
}

void TagsTableModel::rowFilesChanged(qlonglong tagId, qlonglong /*filesCount*/)
{
    announceRow(tagId);
}

void TagsTableModel::rowGroupsChanged(qlonglong tagId, const QVector<qint64> &groups)
{
    if (TagItem *item = itemOf(tagId)) {
        item->setGroups(groups);
        announceRow(tagId);
    }
}

void TagsTableModel::addedGroup(const QVariant &groupId)
{
    const GroupItem *group = m_manager ? m_manager->groups()->value(groupId.toLongLong()) : nullptr;
    if (!group)
        return;
    connect(group, &GroupItem::groupTagsChanged, this, &TagsTableModel::updatedGroup, Qt::UniqueConnection);
    applyGroup(group->id(), group->tags());
    if (m_firstChanged >= 0 && !m_announceTimer.isActive())
        m_announceTimer.start();
}

void TagsTableModel::removedGroup(const QVariant &groupId)
{
    applyGroup(groupId.toLongLong(), {});
    announceGathered();
}

void TagsTableModel::updatedGroup(const QVector<qint64> &tagIds)
{
    if (const auto *group = qobject_cast<const GroupItem *>(sender()))
        applyGroup(group->id(), tagIds);
    // Each announcement makes the proxies place the rows anew.
    if (!m_areGroupsChanging)
        announceGathered();
}

void TagsTableModel::applyGroup(qint64 groupId, const QVector<qint64> &tagIds)
{
    const QVector<qint64> earlier = m_groupTags.value(groupId);
    const QSet<qint64> members(tagIds.begin(), tagIds.end());
    m_isGathering = true;
    for (const qint64 tagId : earlier) {
        TagItem *tag = members.contains(tagId) ? nullptr : itemOf(tagId);
        if (tag)
            tag->removeGroup(groupId);
    }
    for (const qint64 tagId : tagIds) {
        if (TagItem *tag = itemOf(tagId))
            tag->addGroup(groupId);
    }
    m_isGathering = false;
    if (tagIds.isEmpty())
        m_groupTags.remove(groupId);
    else
        m_groupTags.insert(groupId, tagIds);
}

void TagsTableModel::announceGathered()
{
    m_announceTimer.stop();
    // Rows may have gone since they were noted.
    const int last = qMin(m_lastChanged, m_rows.size() - 1);
    if (m_firstChanged >= 0 && m_firstChanged <= last)
        announceRows(m_firstChanged, last);
    m_firstChanged = m_lastChanged = -1;
}

void TagsTableModel::announceRow(qint64 tagId)
{
    const int row = rowOf(tagId);
    if (row < 0)
        return;
    if (!m_isGathering) {
        announceRows(row, row);
        return;
    }
    m_firstChanged = m_firstChanged < 0 ? row : qMin(m_firstChanged, row);
    m_lastChanged = qMax(m_lastChanged, row);
}

void TagsTableModel::announceRows(int first, int last)
{
    emit dataChanged(index(first, NameColumn), index(last, ColumnCount - 1));
}

void TagsTableModel::loadTags(const TableData &tags)
{
    if (!m_rows.isEmpty()) {
        beginRemoveRows({}, 0, m_rows.size() - 1);
        for (int row = m_rows.size() - 1; row >= 0; --row)
            releaseItem(row);
        endRemoveRows();
    }
    addTags(tags);
}

void TagsTableModel::addTags(const TableData &tags)
{
    TableData unknown;
    QVector<qint64> ids;
    QSet<qint64> seen;
    for (TableRowData *row : tags) {
        const qint64 tagId = idOf(*row);
        if (seen.contains(tagId) || itemOf(tagId)) {
            qWarning("TagsTableModel::addNewTag - adds duplicate where Id = %d", static_cast<int>(tagId));
            if (TagItem *known = itemOf(tagId)) {
                for (const QString &column : row->columns())
                    setField(known, column, row->value(column));
                follow(row, known);
            }
            continue;
        }
        seen.insert(tagId);
        ids.append(tagId);
        unknown.append(row);
    }
    if (unknown.isEmpty())
        return;

    const QHash<qint64, QVector<qint64>> groups = groupsOf(ids);
    beginInsertRows({}, m_rows.size(), m_rows.size() + unknown.size() - 1);
    for (int i = 0; i < unknown.size(); ++i)
        m_rows.append(makeItem(unknown.at(i), ids.at(i), groups.value(ids.at(i))));
    endInsertRows();
}

void TagsTableModel::addNewTag(TableRowData *tag)
{
    addTags({tag});
}

TagItem *TagsTableModel::makeItem(TableRowData *row, qint64 tagId, const QVector<qint64> &groups)
{
    auto *item =
        new TagItem(tagId, row->value(nameColumn).toString(), row->value(descriptionColumn).toString(),
                    row->value(dateColumn).toInt(), 0, groups, this);
    connect(item, &TagItem::tagNameChanged, this, &TagsTableModel::rowNameChanged);
    connect(item, &TagItem::tagDescriptionChanged, this, &TagsTableModel::rowDescriptionChanged);
    connect(item, &TagItem::tagFilesCountChanged, this, &TagsTableModel::rowFilesChanged);
    connect(item, &TagItem::tagGroupsChanged, this, &TagsTableModel::rowGroupsChanged);
    follow(row, item);
    return item;
}

void TagsTableModel::follow(TableRowData *row, TagItem *item)
{
    connect(row, &TableRowData::dataUpdated, item,
            [this, item](const QString &column, const QVariant &value) { setField(item, column, value); });
}

void TagsTableModel::setField(TagItem *item, const QString &column, const QVariant &value)
{
    if (column == nameColumn) {
        item->setName(value.toString());
    } else if (column == descriptionColumn) {
        item->setDescription(value.toString());
    } else if (column == dateColumn && item->creationDate() != value.toInt()) {
        item->setCreationDate(value.toInt());
        announceRow(item->id());
    }
}

QHash<qint64, QVector<qint64>> TagsTableModel::groupsOf(const QVector<qint64> &tagIds) const
{
    QHash<qint64, QVector<qint64>> result;
    if (!m_manager || m_manager->groups()->isEmpty())
        return result;
    const QSet<qint64> wanted(tagIds.begin(), tagIds.end());
    for (const GroupItem *group : qAsConst(*m_manager->groups())) {
        for (const qint64 tagId : group->tags()) {
            if (wanted.contains(tagId))
                result[tagId].append(group->id());
        }
    }
    return result;
}

void TagsTableModel::removeTags(const QVector<qint64> &tagIds)
{
    const QSet<qint64> gone(tagIds.begin(), tagIds.end());
    // Neighbours go together: each removal makes every proxy renumber its rows.
    QVector<QPair<int, int>> ranges;
    for (int row = m_rows.size() - 1; row >= 0; --row) {
        if (!gone.contains(m_rows.at(row)->id()))
            continue;
        if (!ranges.isEmpty() && ranges.last().first == row + 1)
            ranges.last().first = row;
        else
            ranges.append({row, row});
    }
    if (ranges.size() > mostRemovals) {
        removeInOneGo(gone);
        return;
    }
    for (const auto &[first, last] : qAsConst(ranges)) {
        beginRemoveRows({}, first, last);
        for (int row = last; row >= first; --row)
            releaseItem(row);
        endRemoveRows();
    }
}

/** As a change of layout, which proxies and selections answer with one look at every row. */
void TagsTableModel::removeInOneGo(const QSet<qint64> &tagIds)
{
    emit layoutAboutToBeChanged();
    QVector<int> newRows;
    int kept = 0;
    for (const TagItem *tag : qAsConst(m_rows))
        newRows.append(tagIds.contains(tag->id()) ? -1 : kept++);
    const QModelIndexList before = persistentIndexList();
    QModelIndexList after;
    for (const QModelIndex &old : before)
        after.append(index(newRows.at(old.row()), old.column()));
    for (int row = m_rows.size() - 1; row >= 0; --row) {
        if (newRows.at(row) < 0)
            releaseItem(row);
    }
    changePersistentIndexList(before, after);
    emit layoutChanged();
}

void TagsTableModel::releaseItem(int row)
{
    TagItem *item = m_rows.at(row);
    m_rowsById.clear();
    m_rows.removeAt(row);
    emit m_rows.itemRemoved(row);
    item->disconnect();
    item->deleteLater();
}

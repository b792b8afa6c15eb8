#include "models/tags/taggroupmodel.h"

#include "app/settings/showntext.h"
#include "db/sql/longtext.h"
#include "models/tags/taggroupshost.h"
#include "models/tags/tagroles.h"

#include <algorithm>

namespace {
Qt::CheckState stateOf(const GroupItem &group)
{
    return group.isVisible() ? Qt::Checked : Qt::Unchecked;
}
} // namespace

TagGroupModel::TagGroupModel(TagGroupsHost *host, GroupMap *groups, QObject *parent)
    : QAbstractTableModel(parent), m_host(host), m_groups(groups)
{
    connect(m_groups, &SignalContainer::itemInserted, this, &TagGroupModel::groupInserted);
    connect(m_groups, &SignalContainer::itemDeleted, this, &TagGroupModel::groupDeleted);
    loadModelData();
}

int TagGroupModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : m_groupIds.size();
}

int TagGroupModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : ColumnCount;
}

const GroupItem *TagGroupModel::groupAt(const QModelIndex &index) const
{
    if (!index.isValid() || index.row() >= m_groupIds.size())
        return nullptr;
    return m_groups->value(m_groupIds.at(index.row()));
}

QVariant TagGroupModel::data(const QModelIndex &index, int role) const
{
    const GroupItem *group = groupAt(index);
    if (!group)
        return {};
    const bool isTabColumn = index.column() == TabColumn;
    switch (role) {
    case Qt::DisplayRole:
        return isTabColumn ? QVariant() : ShownText::cut(group->name());
    case Qt::EditRole:
        return isTabColumn ? QVariant() : group->name();
    case Qt::CheckStateRole:
        return isTabColumn ? QVariant(stateOf(*group)) : QVariant();
    case GroupRoles::Value:
        return isTabColumn ? QVariant(stateOf(*group)) : QVariant(group->name());
    case GroupRoles::GroupId:
        return group->id();
    default:
        return {};
    }
}

bool TagGroupModel::setData(const QModelIndex &index, const QVariant &value, int role)
{
    const GroupItem *group = groupAt(index);
    if (!group || !m_host)
        return false;
    const qint64 groupId = group->id();
    if (index.column() == GroupColumn && role == Qt::EditRole) {
        // The edit reads the group anew, after which the pointer may be another one's.
        const QString before = group->name();
        if (value.toString() == before || value.toString().simplified().isEmpty() || !m_host->mayEdit())
            return false;
        m_host->renameGroup(groupId, value.toString());
        group = m_groups->value(groupId);
        return group && group->name() != before;
    }
    if (index.column() == TabColumn && role == Qt::CheckStateRole) {
        const bool isVisible = value.toInt() == Qt::Checked;
        if (isVisible == group->isVisible() || !m_host->mayEdit())
            return false;
        m_host->setGroupVisible({groupId}, isVisible);
        return true;
    }
    return false;
}

QVariant TagGroupModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return {};
    if (section == GroupColumn)
        return tr("Group");
    return section == TabColumn ? QVariant(tr("Tab")) : QVariant();
}

Qt::ItemFlags TagGroupModel::flags(const QModelIndex &index) const
{
    if (!index.isValid())
        return Qt::NoItemFlags;
    const Qt::ItemFlags flags = Qt::ItemIsSelectable | Qt::ItemIsEnabled | Qt::ItemNeverHasChildren;
    if (index.column() == TabColumn)
        return flags | Qt::ItemIsUserCheckable;
    const GroupItem *group = groupAt(index);
    // A text that was not read whole must not be written back.
    return group && !LongText::isTooLong(group->name()) ? flags | Qt::ItemIsEditable : flags;
}

void TagGroupModel::loadModelData()
{
    beginResetModel();
    m_groupIds = m_groups->keys().toVector();
    for (const GroupItem *group : qAsConst(*m_groups))
        follow(group);
    endResetModel();
}

void TagGroupModel::updateModel()
{
    // Rows stay; only what the views show of them is asked for once more.
    emit layoutAboutToBeChanged();
    emit layoutChanged();
}

void TagGroupModel::follow(const GroupItem *group)
{
    // A group that was read anew may be the one that is followed already.
    disconnect(group, nullptr, this, nullptr);
    const auto changed = [this, group] { groupChanged(group->id()); };
    connect(group, &GroupItem::groupNameChanged, this, changed);
    connect(group, &GroupItem::groupVisibilityChanged, this, changed);
}

void TagGroupModel::groupInserted(const QVariant &groupId)
{
    const qint64 id = groupId.toLongLong();
    const GroupItem *group = m_groups->value(id);
    // Rows stand by their ids, as the map of the groups does.
    const auto place = std::lower_bound(m_groupIds.constBegin(), m_groupIds.constEnd(), id);
    if (!group || (place != m_groupIds.constEnd() && *place == id))
        return;
    const int row = static_cast<int>(place - m_groupIds.constBegin());
    beginInsertRows({}, row, row);
    m_groupIds.insert(row, id);
    endInsertRows();
    follow(group);
}

void TagGroupModel::groupDeleted(const QVariant &groupId)
{
    const int row = m_groupIds.indexOf(groupId.toLongLong());
    if (row < 0)
        return;
    beginRemoveRows({}, row, row);
    m_groupIds.remove(row);
    endRemoveRows();
}

void TagGroupModel::groupChanged(qint64 groupId)
{
    const int row = m_groupIds.indexOf(groupId);
    if (row >= 0)
        emit dataChanged(index(row, GroupColumn), index(row, TabColumn));
}

#include "models/tagstablemodel.h"

#include "app/constants.h"
#include "core/controllers/tagscontroller.h"
#include "db/databasemanger.h"
#include "models/idlistmime.h"
#include "models/tagroles.h"

#include <QDateTime>
#include <QDebug>
#include <QMimeData>
#include <QSet>
#include <QUrl>

namespace {
const QString idColumn = QStringLiteral("tag_id");
const QString nameColumn = QStringLiteral("tag_name");
const QString descriptionColumn = QStringLiteral("tag_description");
const QString dateColumn = QStringLiteral("creation_date");

qint64 idOf(const TableRowData &row)
{
    return row.value(idColumn).toLongLong();
}
} // namespace

TagsTableModel::TagsTableModel(TagsController *controller, DatabaseManger *manager, QObject *parent)
    : QAbstractTableModel(parent), m_controller(controller), m_manager(manager)
{
    if (m_controller)
        connect(m_controller, &TagsController::markedTagsChanged, this, &TagsTableModel::setMarkedTagIds);
    if (m_manager)
        connectManager();
}

TagsTableModel::~TagsTableModel() = default;

void TagsTableModel::connectManager()
{
    connect(m_manager, &DatabaseManger::tagsLoaded, this, &TagsTableModel::loadTags);
    connect(m_manager, &DatabaseManger::tagsAdded, this, &TagsTableModel::addTags);
    connect(m_manager, &DatabaseManger::tagsRemoved, this, &TagsTableModel::removeTags);

    connect(m_manager, &DatabaseManger::filesLoaded, this, &TagsTableModel::updateFileCounts);
    connect(m_manager, &DatabaseManger::filesAdded, this, &TagsTableModel::updateFileCounts);
    connect(m_manager, &DatabaseManger::filesRemoved, this, &TagsTableModel::updateFileCounts);
    connect(m_manager, &DatabaseManger::filesChanged, this, &TagsTableModel::updateFileCounts);

    const GroupMap *groups = m_manager->groups();
    connect(groups, &SignalContainer::itemInserted, this, &TagsTableModel::addedGroup);
    connect(groups, &SignalContainer::itemDeleted, this, &TagsTableModel::removedGroup);
    for (auto it = groups->begin(); it != groups->end(); ++it)
        addedGroup(it.key());
}

int TagsTableModel::rowOf(qint64 tagId) const
{
    if (m_rowsById.size() != m_rows.size()) {
        m_rowsById.clear();
        m_rowsById.reserve(m_rows.size());
        for (int row = 0; row < m_rows.size(); ++row)
            m_rowsById.insert(m_rows.at(row)->id(), row);
    }
    return m_rowsById.value(tagId, -1);
}

TagItem *TagsTableModel::itemOf(qint64 tagId) const
{
    return m_rows.value(rowOf(tagId));
}

int TagsTableModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : m_rows.size();
}

int TagsTableModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : ColumnCount;
}

QVariant TagsTableModel::data(const QModelIndex &index, int role) const
{
    const TagItem *tag = index.isValid() ? tagAt(index.row()) : nullptr;
    if (!tag)
        return {};
    switch (role) {
    case Qt::DecorationRole:
        return decoration(*tag);
    case Qt::DisplayRole:
    case Qt::EditRole:
        return text(*tag, index.column());
    case TagRoles::TagId:
        return tag->id();
    case TagRoles::MarkedTagIds:
        return QVariant::fromValue(m_markedTagIds);
    case TagRoles::Groups:
        return QVariant::fromValue(tag->groups());
    default:
        return {};
    }
}

QVariant TagsTableModel::decoration(const TagItem &tag) const
{
    if (!m_markedTagIds.contains(tag.id()))
        return {};
    if (m_mark.isNull())
        m_mark = QPixmap(QStringLiteral(":/icons/tagMark.png"));
    return m_mark;
}

QVariant TagsTableModel::text(const TagItem &tag, int column) const
{
    switch (column) {
    case NameColumn:
        return tag.name();
    case DescriptionColumn:
        return tag.description();
    case CreationDateColumn:
        return QDateTime::fromSecsSinceEpoch(tag.creationDate());
    case FilesColumn:
        return m_controller ? m_controller->filesCount(tag.id()) : 0;
    default:
        return {};
    }
}

QVariant TagsTableModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return {};
    switch (section) {
    case NameColumn:
        return tr("Name");
    case DescriptionColumn:
        return tr("Description");
    case CreationDateColumn:
        return tr("Creation Date");
    case FilesColumn:
        return tr("Files");
    default:
        return {};
    }
}

Qt::ItemFlags TagsTableModel::flags(const QModelIndex &index) const
{
    if (!index.isValid())
        return Qt::NoItemFlags;
    const Qt::ItemFlags flags =
        Qt::ItemIsSelectable | Qt::ItemIsDragEnabled | Qt::ItemIsDropEnabled | Qt::ItemIsEnabled;
    return index.column() <= DescriptionColumn ? flags | Qt::ItemIsEditable : flags;
}

bool TagsTableModel::setData(const QModelIndex &index, const QVariant &value, int role)
{
    if (!index.isValid() || index.row() >= m_rows.size() || data(index, role) == value)
        return false;
    if (role == TagRoles::MarkedTagIds) {
        const QVector<qint64> earlier = m_markedTagIds;
        setMarkedTagIds(value.value<QVector<qint64>>());
        return m_markedTagIds != earlier;
    }
    if (role != Qt::EditRole || index.column() > DescriptionColumn || !mayEdit())
        return false;
    return editTag(*m_rows.at(index.row()), index.column(), value.toString());
}

bool TagsTableModel::mayEdit() const
{
    if (!m_controller)
        return false;
    if (!m_controller->isReadOnly())
        return true;
    m_controller->showReadOnlyMessage();
    return false;
}

bool TagsTableModel::editTag(const TagItem &tag, int column, const QString &value)
{
    // The edit reloads the row, so the item is looked up again before it is compared.
    const qint64 tagId = tag.id();
    const QString before = text(tag, column).toString();
    if (column == NameColumn) {
        if (value.simplified().isEmpty())
            return false;
        m_controller->renameTag(tagId, value);
    } else {
        m_controller->changeDescription(tagId, value);
    }
    const TagItem *edited = itemOf(tagId);
    return edited && text(*edited, column).toString() != before;
}

void TagsTableModel::setMarkedTagIds(const QVector<qint64> &tagIds)
{
    if (m_markedTagIds == tagIds)
        return;
    m_markedTagIds = tagIds;
    if (!m_rows.isEmpty())
        emit dataChanged(index(0, NameColumn), index(m_rows.size() - 1, NameColumn));
}

QStringList TagsTableModel::mimeTypes() const
{
    return {Constants::tagMimeType};
}

QMimeData *TagsTableModel::mimeData(const QModelIndexList &indexes) const
{
    QVector<qint64> tagIds;
    QSet<qint64> seen;
    for (const QModelIndex &index : indexes) {
        const TagItem *tag = index.isValid() ? tagAt(index.row()) : nullptr;
        if (!tag || seen.contains(tag->id()))
            continue;
        seen.insert(tag->id());
        tagIds.append(tag->id());
    }
    return IdListMime::pack(Constants::tagMimeType, tagIds);
}

bool TagsTableModel::canDropMimeData(const QMimeData *data, Qt::DropAction /*action*/, int /*row*/,
                                     int /*column*/, const QModelIndex & /*parent*/) const
{
    if (!data)
        return false;
    if (data->hasFormat(Constants::fileMimeType))
        return true;
    return data->hasFormat(Constants::uriMimeType) && m_controller && !m_controller->isReadOnly();
}

bool TagsTableModel::dropMimeData(const QMimeData *data, Qt::DropAction /*action*/, int /*row*/,
                                  int /*column*/, const QModelIndex &parent)
{
    const TagItem *tag = parent.isValid() ? tagAt(parent.row()) : nullptr;
    if (!data || !tag)
        return false;
    if (!mayEdit())
        return true;
    const qint64 tagId = tag->id();
    if (data->hasFormat(Constants::fileMimeType)) {
        const QVector<qint64> fileIds = IdListMime::unpack(data, Constants::fileMimeType);
        if (!fileIds.isEmpty())
            m_controller->linkFilesToTag(tagId, fileIds);
    } else if (data->hasFormat(Constants::uriMimeType)) {
        const QList<QUrl> urls = data->urls();
        if (!urls.isEmpty())
            m_controller->addFilesToTag(tagId, urls);
    }
    return true;
}

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
}

void TagsTableModel::removedGroup(const QVariant &groupId)
{
    applyGroup(groupId.toLongLong(), {});
}

void TagsTableModel::updatedGroup(const QVector<qint64> &tagIds)
{
    if (const auto *group = qobject_cast<const GroupItem *>(sender()))
        applyGroup(group->id(), tagIds);
}

void TagsTableModel::applyGroup(qint64 groupId, const QVector<qint64> &tagIds)
{
    const QSet<qint64> members(tagIds.begin(), tagIds.end());
    m_isGathering = true;
    for (TagItem *tag : qAsConst(m_rows)) {
        if (members.contains(tag->id()))
            tag->addGroup(groupId);
        else
            tag->removeGroup(groupId);
    }
    m_isGathering = false;
    if (m_firstChanged >= 0)
        announceRows(m_firstChanged, m_lastChanged);
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
    for (int last = m_rows.size() - 1; last >= 0; --last) {
        if (!gone.contains(m_rows.at(last)->id()))
            continue;
        // Neighbours go together: each removal makes every proxy renumber its rows.
        int first = last;
        while (first > 0 && gone.contains(m_rows.at(first - 1)->id()))
            --first;
        beginRemoveRows({}, first, last);
        for (int row = last; row >= first; --row)
            releaseItem(row);
        endRemoveRows();
        last = first;
    }
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

void TagsTableModel::updateFileCounts()
{
    if (!m_rows.isEmpty())
        emit dataChanged(index(0, FilesColumn), index(m_rows.size() - 1, FilesColumn), {Qt::DisplayRole});
}

#include "models/tags/tagstablemodel.h"

#include "app/settings/constants.h"
#include "app/settings/showntext.h"
#include "db/manager/databasemanger.h"
#include "db/sql/longtext.h"
#include "models/base/droppedurls.h"
#include "models/base/idlistmime.h"
#include "models/tags/tagroles.h"
#include "models/tags/tagrows.h"
#include "models/tags/tagshost.h"

#include <QDateTime>
#include <QMimeData>
#include <QSet>
#include <QUrl>

namespace {
// More separate runs of rows than this are removed by one change of layout.
constexpr int mostRemovals = 100;
} // namespace

TagsTableModel::TagsTableModel(TagsHost *host, DatabaseManger *manager, QObject *parent)
    : QAbstractTableModel(parent), m_host(host), m_manager(manager), m_rows(new TagRows(this))
{
    connect(m_rows, &TagRows::changed, this, &TagsTableModel::announceRow);
    m_announceTimer.setSingleShot(true);
    connect(&m_announceTimer, &QTimer::timeout, this, &TagsTableModel::announceGathered);
    if (m_manager)
        connectManager();
}

TagsTableModel::~TagsTableModel() = default;

void TagsTableModel::connectManager()
{
    connect(m_manager, &DatabaseManger::tagsLoaded, this, &TagsTableModel::loadTags);
    connect(m_manager, &DatabaseManger::tagsAdded, this, &TagsTableModel::addTags);
    connect(m_manager, &DatabaseManger::tagsRemoved, this, &TagsTableModel::removeTags);

    const GroupMap *groups = m_manager->groups();
    connect(groups, &SignalContainer::itemInserted, this, &TagsTableModel::addedGroup);
    connect(groups, &SignalContainer::itemDeleted, this, &TagsTableModel::removedGroup);
    connect(m_manager, &DatabaseManger::aboutToUpdateGroups, this, [this] { m_areGroupsChanging = true; });
    connect(m_manager, &DatabaseManger::groupsUpdated, this, [this] {
        m_areGroupsChanging = false;
        announceGathered();
    });
    for (auto it = groups->begin(); it != groups->end(); ++it)
        addedGroup(it.key());
}

const TagItem *TagsTableModel::tagAt(int row) const
{
    return m_rows->at(row);
}

int TagsTableModel::rowOf(qint64 tagId) const
{
    return m_rows->rowOf(tagId);
}

int TagsTableModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : m_rows->count();
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
    case Qt::DisplayRole: {
        const QVariant value = text(*tag, index.column());
        return value.type() == QVariant::String ? ShownText::cut(value.toString()) : value;
    }
    case Qt::EditRole:
        return text(*tag, index.column());
    case Qt::AccessibleTextRole:
        return index.column() == NameColumn ? fileCount(*tag).spoken(ShownText::cut(tag->name()))
                                            : QVariant();
    case TagRoles::FileCount:
        return QVariant::fromValue(fileCount(*tag));
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
        return m_host ? m_host->filesCount(tag.id()) : 0;
    default:
        return {};
    }
}

FileCount TagsTableModel::fileCount(const TagItem &tag) const
{
    return m_host ? m_host->fileCount(tag.id()) : FileCount();
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
    const TagItem *tag = tagAt(index.row());
    // A text that was not read whole must not be written back.
    const bool isEditable = tag && index.column() <= DescriptionColumn &&
                            !LongText::isTooLong(text(*tag, index.column()).toString());
    return isEditable ? flags | Qt::ItemIsEditable : flags;
}

bool TagsTableModel::setData(const QModelIndex &index, const QVariant &value, int role)
{
    if (!index.isValid() || index.row() >= m_rows->count() || data(index, role) == value)
        return false;
    if (role == TagRoles::MarkedTagIds) {
        const QVector<qint64> earlier = m_markedTagIds;
        setMarkedTagIds(value.value<QVector<qint64>>());
        return m_markedTagIds != earlier;
    }
    if (role != Qt::EditRole || index.column() > DescriptionColumn || !mayEdit(m_host))
        return false;
    return editTag(*m_rows->at(index.row()), index.column(), value.toString());
}

bool TagsTableModel::editTag(const TagItem &tag, int column, const QString &value)
{
    // The edit reloads the row, so the item is looked up again before it is compared.
    const qint64 tagId = tag.id();
    const QString before = text(tag, column).toString();
    if (column == NameColumn) {
        if (value.simplified().isEmpty())
            return false;
        m_host->renameTag(tagId, value);
    } else {
        m_host->changeDescription(tagId, value);
    }
    const TagItem *edited = m_rows->item(tagId);
    return edited && text(*edited, column).toString() != before;
}

void TagsTableModel::setMarkedTagIds(const QVector<qint64> &tagIds)
{
    if (m_markedTagIds == tagIds)
        return;
    m_markedTagIds = tagIds;
    // The mark stands in each column of a row.
    if (m_rows->count() > 0)
        announceRows(0, m_rows->count() - 1);
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
    return data->hasFormat(Constants::uriMimeType) && m_host && !m_host->isReadOnly();
}

bool TagsTableModel::dropMimeData(const QMimeData *data, Qt::DropAction /*action*/, int /*row*/,
                                  int /*column*/, const QModelIndex &parent)
{
    const TagItem *tag = parent.isValid() ? tagAt(parent.row()) : nullptr;
    if (!data || !tag || !m_host)
        return false;
    if (!m_host->mayEdit())
        return true;
    const qint64 tagId = tag->id();
    if (data->hasFormat(Constants::fileMimeType)) {
        const QVector<qint64> fileIds = IdListMime::unpack(data, Constants::fileMimeType);
        if (!fileIds.isEmpty())
            m_host->linkFilesToTag(tagId, fileIds);
    } else if (data->hasFormat(Constants::uriMimeType)) {
        const QList<QUrl> urls = DroppedUrls::of(*data);
        if (!urls.isEmpty())
            m_host->addFilesToTag(tagId, urls);
    }
    return true;
}

void TagsTableModel::updateFileCounts()
{
    int first = -1;
    int last = -1;
    for (int row = 0; m_host && row < m_rows->count(); ++row) {
        const QSignalBlocker blocker(m_rows->at(row)); // told together
        const qint64 before = m_rows->at(row)->filesCount();
        m_rows->at(row)->setFilesCount(m_host->filesCount(m_rows->at(row)->id()));
        if (m_rows->at(row)->filesCount() == before)
            continue;
        first = first < 0 ? row : first;
        last = row;
    }
    if (first >= 0)
        emit dataChanged(index(first, FilesColumn), index(last, FilesColumn), {Qt::DisplayRole});
}

void TagsTableModel::rowNameChanged(qlonglong tagId, const QString &name)
{
    if (TagItem *item = m_rows->item(tagId)) {
        item->setName(name);
        announceRow(tagId);
    }
}

void TagsTableModel::rowDescriptionChanged(qlonglong tagId, const QString &description)
{
    if (TagItem *item = m_rows->item(tagId)) {
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
    if (TagItem *item = m_rows->item(tagId)) {
        item->setGroups(groups);
        announceRow(tagId);
    }
}

void TagsTableModel::addedGroup(const QVariant &groupId)
{
    const GroupItem *group = m_manager ? m_manager->groups()->value(groupId.toLongLong()) : nullptr;
    if (!group)
        return;
    connect(group, &GroupItem::groupTagsChanged, this,
            [this, id = group->id()](const QVector<qint64> &tagIds) { updatedGroup(id, tagIds); });
    applyGroup(group->id(), group->tags());
    if (m_firstChanged >= 0 && !m_announceTimer.isActive())
        m_announceTimer.start();
}

void TagsTableModel::removedGroup(const QVariant &groupId)
{
    applyGroup(groupId.toLongLong(), {});
    announceGathered();
}

void TagsTableModel::updatedGroup(qint64 groupId, const QVector<qint64> &tagIds)
{
    applyGroup(groupId, tagIds);
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
        TagItem *tag = members.contains(tagId) ? nullptr : m_rows->item(tagId);
        if (tag)
            tag->removeGroup(groupId);
    }
    for (const qint64 tagId : tagIds) {
        if (TagItem *tag = m_rows->item(tagId))
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
    const int last = qMin(m_lastChanged, m_rows->count() - 1);
    if (m_firstChanged >= 0 && m_firstChanged <= last)
        announceRows(m_firstChanged, last);
    m_firstChanged = m_lastChanged = -1;
}

void TagsTableModel::announceRow(qint64 tagId)
{
    const int row = m_rows->rowOf(tagId);
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
    if (m_rows->count() > 0) {
        beginRemoveRows({}, 0, m_rows->count() - 1);
        for (int row = m_rows->count() - 1; row >= 0; --row)
            m_rows->remove(row);
        endRemoveRows();
    }
    addTags(tags);
}

void TagsTableModel::addTags(const TableData &tags)
{
    const TableData unknown = m_rows->update(tags);
    if (unknown.isEmpty())
        return;
    QVector<qint64> ids;
    for (const TableRowData *row : unknown)
        ids.append(TagRows::idOf(*row));
    const QHash<qint64, QVector<qint64>> groups = groupsOf(ids);
    beginInsertRows({}, m_rows->count(), m_rows->count() + unknown.size() - 1);
    for (int i = 0; i < unknown.size(); ++i)
        followItem(m_rows->append(unknown.at(i), groups.value(ids.at(i))));
    endInsertRows();
}

void TagsTableModel::followItem(const TagItem *item)
{
    connect(item, &TagItem::tagNameChanged, this, &TagsTableModel::rowNameChanged);
    connect(item, &TagItem::tagDescriptionChanged, this, &TagsTableModel::rowDescriptionChanged);
    connect(item, &TagItem::tagFilesCountChanged, this, &TagsTableModel::rowFilesChanged);
    connect(item, &TagItem::tagGroupsChanged, this, &TagsTableModel::rowGroupsChanged);
}

void TagsTableModel::addNewTag(TableRowData *tag)
{
    addTags({tag});
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
    for (int row = m_rows->count() - 1; row >= 0; --row) {
        if (!gone.contains(m_rows->at(row)->id()))
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
            m_rows->remove(row);
        endRemoveRows();
    }
}

/** As a change of layout, which proxies and selections answer with one look at every row. */
void TagsTableModel::removeInOneGo(const QSet<qint64> &tagIds)
{
    emit layoutAboutToBeChanged();
    QVector<int> newRows;
    int kept = 0;
    for (int row = 0; row < m_rows->count(); ++row)
        newRows.append(tagIds.contains(m_rows->at(row)->id()) ? -1 : kept++);
    const QModelIndexList before = persistentIndexList();
    QModelIndexList after;
    for (const QModelIndex &old : before)
        after.append(index(newRows.at(old.row()), old.column()));
    for (int row = m_rows->count() - 1; row >= 0; --row) {
        if (newRows.at(row) < 0)
            m_rows->remove(row);
    }
    changePersistentIndexList(before, after);
    emit layoutChanged();
}

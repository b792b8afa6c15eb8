#include "models/tags/tagstablemodel.h"

#include "app/settings/constants.h"
#include "app/settings/showntext.h"
#include "db/manager/databasemanger.h"
#include "db/sql/longtext.h"
#include "models/base/droppedurls.h"
#include "models/base/idlistmime.h"
#include "models/tags/tagroles.h"
#include "models/tags/tagshost.h"

#include <QDateTime>
#include <QMimeData>
#include <QSet>
#include <QUrl>

TagsTableModel::TagsTableModel(TagsHost *host, DatabaseManger *manager, QObject *parent)
    : QAbstractTableModel(parent), m_host(host), m_manager(manager)
{
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
    case Qt::DisplayRole: {
        const QVariant value = text(*tag, index.column());
        return value.type() == QVariant::String ? ShownText::cut(value.toString()) : value;
    }
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
        return m_host ? m_host->filesCount(tag.id()) : 0;
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
    const TagItem *tag = tagAt(index.row());
    // A text that was not read whole must not be written back.
    const bool isEditable = tag && index.column() <= DescriptionColumn &&
                            !LongText::isTooLong(text(*tag, index.column()).toString());
    return isEditable ? flags | Qt::ItemIsEditable : flags;
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
    if (role != Qt::EditRole || index.column() > DescriptionColumn || !mayEdit(m_host))
        return false;
    return editTag(*m_rows.at(index.row()), index.column(), value.toString());
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
    const TagItem *edited = itemOf(tagId);
    return edited && text(*edited, column).toString() != before;
}

void TagsTableModel::setMarkedTagIds(const QVector<qint64> &tagIds)
{
    if (m_markedTagIds == tagIds)
        return;
    m_markedTagIds = tagIds;
    // The mark stands in each column of a row.
    if (!m_rows.isEmpty())
        announceRows(0, m_rows.size() - 1);
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
    for (int row = 0; m_host && row < m_rows.size(); ++row) {
        const QSignalBlocker blocker(m_rows.at(row)); // told together
        const qint64 before = m_rows.at(row)->filesCount();
        m_rows.at(row)->setFilesCount(m_host->filesCount(m_rows.at(row)->id()));
        if (m_rows.at(row)->filesCount() == before)
            continue;
        first = first < 0 ? row : first;
        last = row;
    }
    if (first >= 0)
        emit dataChanged(index(first, FilesColumn), index(last, FilesColumn), {Qt::DisplayRole});
}

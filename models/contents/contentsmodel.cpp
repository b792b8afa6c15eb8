#include "models/contents/contentsmodel.h"

#include "app/settings/constants.h"
#include "app/settings/showntext.h"
#include "core/records/file.h"
#include "core/records/filekind.h"
#include "db/sql/longtext.h"
#include "models/base/idlistmime.h"
#include "models/base/modelroles.h"
#include "models/contents/contentscolumn.h"
#include "models/contents/contentshost.h"
#include "models/contents/rowruns.h"

#include <QBitArray>
#include <QElapsedTimer>
#include <QFontMetrics>
#include <QGuiApplication>
#include <QMimeData>

#include <algorithm>
#include <iterator>

namespace {

constexpr int pictureSize = 128;

// Each run of rows costs the proxies a pass over all rows, so that fewer runs are worth it in a large table.
constexpr int mostRowsOneByOne = 300;
constexpr int mostRunsOneByOne = 32;
constexpr qint64 mostRowsVisited = 4000000;

} // namespace

ContentsModel::ContentsModel(QObject *parent) : QAbstractTableModel(parent) {}

ContentsModel::~ContentsModel() = default;

const File *ContentsModel::fileAt(int row) const
{
    return row >= 0 && row < m_files.size() ? m_files.at(row) : nullptr;
}

int ContentsModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : m_files.size();
}

int ContentsModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : columnTotal;
}

QVariant ContentsModel::data(const QModelIndex &index, int role) const
{
    const File *file = index.isValid() ? fileAt(index.row()) : nullptr;
    if (!file || index.column() >= columnTotal)
        return {};
    switch (role) {
    case Qt::DecorationRole:
        return index.column() == ThumbnailColumn ? decoration(*file) : QVariant();
    case Qt::DisplayRole: {
        const QVariant value = ContentsColumn::of(index.column()).shown(*this, *file);
        return value.type() == QVariant::String ? ShownText::cut(value.toString()) : value;
    }
    case Qt::EditRole:
        return editText(*file, index.column());
    case Qt::ToolTipRole:
    case Qt::AccessibleTextRole:
    case Qt::SizeHintRole:
        return index.column() == ThumbnailColumn ? thumbnailColumnRole(*file, role) : QVariant();
    default:
        return fileRole(*file, role);
    }
}

QString ContentsModel::tagNames(const QVector<qint64> &tagIds) const
{
    return m_host ? m_host->joinedTagNames(tagIds) : QString();
}

// An editor starts with the whole name: an elided one would become the new name of the file.
QVariant ContentsModel::editText(const File &file, int column) const
{
    return column == ThumbnailColumn ? QVariant(file.name()) : ContentsColumn::of(column).shown(*this, file);
}

QVariant ContentsModel::thumbnailColumnRole(const File &file, int role) const
{
    if (role == Qt::ToolTipRole)
        return ShownText::toolTip(file.name());
    if (role != Qt::SizeHintRole)
        return file.name();
    // A fixed size spares views from asking for the picture of every row only to measure it.
    const int lines = 2 * QFontMetrics(QGuiApplication::font()).lineSpacing();
    return QSize(elidedWidth, pictureSize + lines);
}

QVariant ContentsModel::decoration(const File &file) const
{
    const bool isMissing = m_host && m_host->isFileMissing(file.id());
    if (file.iconKind() != FilePictures::thumbnailKind)
        return m_pictures.ofKind(file.iconKind(), isMissing, file.internal());
    const QImage *thumbnail = m_host ? m_host->thumbnailOf(file.id()) : nullptr;
    return m_pictures.ofThumbnail(file.id(), thumbnail, isMissing, file.internal());
}

QVariant ContentsModel::fileRole(const File &file, int role) const
{
    switch (role) {
    case ContentsRoles::Name:
        return file.name();
    case ContentsRoles::FileId:
        return file.id();
    case ContentsRoles::Description:
        return file.description();
    case ContentsRoles::Tags:
        return QVariant::fromValue(file.tags());
    case ContentsRoles::AdditionDate:
        return file.additionDate();
    case ContentsRoles::ModificationDate:
        return file.modificationDate();
    case ContentsRoles::Size:
        return file.size();
    case ContentsRoles::Path:
        return file.path();
    case ContentsRoles::RelPath:
        return file.relPath();
    case ContentsRoles::IdCode:
        return file.idCode();
    case ContentsRoles::Internal:
        return file.internal();
    default:
        return {};
    }
}

bool ContentsModel::setData(const QModelIndex &index, const QVariant &value, int role)
{
    const File *file = index.isValid() ? fileAt(index.row()) : nullptr;
    if (!file || !m_host || index.column() >= columnTotal)
        return false;
    if (role != Qt::DisplayRole && role != Qt::EditRole)
        return false;
    const qint64 fileId = file->id();
    const QString newText = value.toString();
    switch (ContentsColumn::of(index.column()).edited) {
    case ContentsColumn::FileDescription:
        return newText != file->description() && m_host->mayEdit() && m_host->describeFile(fileId, newText);
    case ContentsColumn::FileName: {
        const QString name = newText.trimmed();
        return !name.isEmpty() && name != file->name() && m_host->mayEdit() &&
               m_host->renameFile(fileId, name);
    }
    case ContentsColumn::Nothing:
        break;
    }
    return false;
}

QString ContentsModel::columnTitle(int column)
{
    return tr(ContentsColumn::of(column).header);
}

QVariant ContentsModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (role != Qt::DisplayRole || orientation != Qt::Horizontal || section < 0 || section >= columnTotal)
        return {};
    return columnTitle(section);
}

Qt::ItemFlags ContentsModel::flags(const QModelIndex &index) const
{
    if (!index.isValid() || index.column() >= columnTotal)
        return Qt::NoItemFlags;
    const Qt::ItemFlags common =
        Qt::ItemIsSelectable | Qt::ItemIsDragEnabled | Qt::ItemIsDropEnabled | Qt::ItemIsEnabled;
    const ContentsColumn::Edited edited = ContentsColumn::of(index.column()).edited;
    const File *file = fileAt(index.row());
    // A text that was not read whole must not be written back.
    const bool isWhole =
        file &&
        !LongText::isTooLong(edited == ContentsColumn::FileDescription ? file->description() : file->name());
    return edited != ContentsColumn::Nothing && isWhole ? common | Qt::ItemIsEditable : common;
}

QStringList ContentsModel::mimeTypes() const
{
    return {Constants::fileMimeType, Constants::tagMimeType};
}

QMimeData *ContentsModel::mimeData(const QModelIndexList &indexes) const
{
    QVector<int> rows;
    rows.reserve(indexes.size());
    for (const QModelIndex &index : indexes)
        rows.append(index.row());
    return dragData(rows);
}

QMimeData *ContentsModel::dragData(const QVector<int> &rows) const
{
    QBitArray isSeen(m_files.size());
    QVector<const File *> files;
    files.reserve(rows.size());
    for (const int row : rows) {
        if (row < 0 || row >= m_files.size() || isSeen.testBit(row))
            continue;
        isSeen.setBit(row);
        files.append(m_files.at(row));
    }
    if (files.isEmpty())
        return nullptr;
    if (m_host)
        return m_host->dragData(files);
    QVector<qint64> ids;
    for (const File *file : qAsConst(files))
        ids.append(file->id());
    return IdListMime::pack(Constants::fileMimeType, ids);
}

bool ContentsModel::canDropMimeData(const QMimeData *data, Qt::DropAction /*action*/, int /*row*/,
                                    int /*column*/, const QModelIndex & /*parent*/) const
{
    if (data->hasFormat(Constants::tagMimeType))
        return true;
    return m_host && !m_host->isReadOnly();
}

bool ContentsModel::dropMimeData(const QMimeData *data, Qt::DropAction /*action*/, int /*row*/,
                                 int /*column*/, const QModelIndex &parent)
{
    if (!m_host || !data->hasFormat(Constants::tagMimeType))
        return false;
    const qint64 fileId = parent.data(ContentsRoles::FileId).toLongLong();
    const QVector<qint64> tagIds = IdListMime::unpack(data, Constants::tagMimeType);
    if (fileId < 1 || tagIds.isEmpty() || !m_host->mayEdit())
        return false;
    return m_host->linkTagsToFile(fileId, tagIds);
}

void ContentsModel::prepareFiles(const QVector<File *> &files)
{
    if (files.isEmpty()) {
        m_coming.clear();
        m_comingIndex.clear();
    }
    for (File *file : files) {
        m_coming.append(file);
        m_comingIndex.append(*file);
    }
}

void ContentsModel::loadFiles(const FileMap &files)
{
    beginResetModel();
    m_pictures.clear();
    m_searchTexts.clear();
    m_nextSearchTexts.stop();
    m_retagged.clear();
    const bool arePrepared = !m_coming.isEmpty() && m_coming.size() == files.size() &&
                             m_coming.last() == std::prev(files.end()).value();
    if (arePrepared) {
        m_files.swap(m_coming);
        m_index.takeOver(m_comingIndex);
    } else {
        m_files.clear();
        m_index.clear();
        m_files.reserve(files.size());
        m_index.reserve(files.size());
        for (File *file : files)
            appendRow(file);
    }
    m_coming = {};
    m_comingIndex = {};
    endResetModel();
    emit contentsChanged();
}

const SearchTexts &ContentsModel::searchTexts() const
{
    if (m_searchTexts.size() == 0)
        m_searchTexts.reserve(m_files.size());
    while (m_searchTexts.size() < m_files.size())
        m_searchTexts.append(*m_files.at(m_searchTexts.size()));
    return m_searchTexts;
}

void ContentsModel::prepareSearch()
{
    if (m_searchTexts.size() < m_files.size() && !m_nextSearchTexts.isActive())
        m_nextSearchTexts.start(0, this);
}

void ContentsModel::timerEvent(QTimerEvent *)
{
    constexpr int milliseconds = 8;
    constexpr int rowsBetweenLooks = 256;
    if (m_searchTexts.size() == 0)
        m_searchTexts.reserve(m_files.size());
    QElapsedTimer timer;
    timer.start();
    while (!timer.hasExpired(milliseconds) && m_searchTexts.size() < m_files.size()) {
        const int end = qMin(m_searchTexts.size() + rowsBetweenLooks, m_files.size());
        while (m_searchTexts.size() < end)
            m_searchTexts.append(*m_files.at(m_searchTexts.size()));
    }
    if (m_searchTexts.size() == m_files.size())
        m_nextSearchTexts.stop();
}

void ContentsModel::clear()
{
    loadFiles(FileMap());
}

void ContentsModel::appendRow(File *file)
{
    m_files.append(file);
    m_index.append(*file);
}

void ContentsModel::addFiles(const FileMap &files)
{
    QVector<File *> fresh;
    QVector<qint64> known;
    for (File *file : files) {
        if (rowOf(file->id()) < 0)
            fresh.append(file);
        else
            known.append(file->id());
    }
    if (!fresh.isEmpty())
        appendRows(fresh);
    if (!known.isEmpty())
        updateFiles(known);
    else if (!fresh.isEmpty())
        emit contentsChanged();
}

// One run at the end costs the proxies one search for its place a row, which under a sort is dear for many.
void ContentsModel::appendRows(const QVector<File *> &files)
{
    const bool isInOneGo = files.size() > mostRowsOneByOne;
    if (isInOneGo)
        emit layoutAboutToBeChanged();
    else
        beginInsertRows(QModelIndex(), m_files.size(), m_files.size() + files.size() - 1);
    for (File *file : files)
        appendRow(file);
    if (isInOneGo)
        emit layoutChanged();
    else
        endInsertRows();
}

void ContentsModel::removeFiles(const QVector<qint64> &fileIds)
{
    // Rows that are marked get other numbers.
    showTags();
    const QVector<int> rows = m_index.rowsOf(fileIds);
    if (rows.isEmpty())
        return;
    if (isWorthOneLayoutChange(rows)) {
        removeInOneGo(rows);
    } else {
        for (int last = rows.size() - 1; last >= 0;) {
            const int first = RowRuns::start(rows, last);
            beginRemoveRows(QModelIndex(), rows.at(first), rows.at(last));
            eraseRows(rows.mid(first, last - first + 1));
            endRemoveRows();
            last = first - 1;
        }
    }
    emit contentsChanged();
}

void ContentsModel::eraseRows(const QVector<int> &rows)
{
    m_index.removeRows(rows);
    m_searchTexts.removeRows(rows);
    auto removed = rows.cbegin();
    int target = rows.first();
    for (int row = rows.first(); row < m_files.size(); ++row) {
        if (removed != rows.cend() && *removed == row)
            ++removed;
        else
            m_files[target++] = m_files.at(row);
    }
    m_files.resize(target);
    emit recordsErased(rows);
}

void ContentsModel::removeInOneGo(const QVector<int> &rows)
{
    emit layoutAboutToBeChanged();
    const QModelIndexList before = persistentIndexList();
    eraseRows(rows);
    QModelIndexList after;
    after.reserve(before.size());
    for (const QModelIndex &old : before) {
        const auto removed = std::lower_bound(rows.cbegin(), rows.cend(), old.row());
        const bool isGone = removed != rows.cend() && *removed == old.row();
        const int row = old.row() - static_cast<int>(removed - rows.cbegin());
        after.append(isGone ? QModelIndex() : createIndex(row, old.column()));
    }
    changePersistentIndexList(before, after);
    emit layoutChanged();
}

void ContentsModel::updateFiles(const QVector<qint64> &fileIds)
{
    const QVector<int> rows = m_index.rowsOf(fileIds);
    if (rows.isEmpty())
        return;
    // All rows first: the filter looks at the whole index at the first signal.
    for (int row : rows) {
        m_index.update(row, *m_files.at(row));
        m_searchTexts.update(row, *m_files.at(row));
    }
    emit recordsChanged(rows);
    emitRowsChanged(rows, 0, columnTotal - 1);
    emit contentsChanged();
}

void ContentsModel::updateTags(const QVector<qint64> &fileIds)
{
    int row = -1;
    for (const qint64 fileId : fileIds) {
        // Mostly the next one.
        const bool isNext = ++row < m_index.size() && m_index.idAt(row) == fileId;
        row = isNext ? row : rowOf(fileId);
        if (row >= 0 && m_index.update(row, *m_files.at(row)))
            m_retagged.mark(row);
    }
}

void ContentsModel::showTags()
{
    const QVector<int> rows = m_retagged.take();
    if (rows.isEmpty())
        return;
    emit tagsChanged(rows);
    emitRowsChanged(rows, TagsColumn, TagsColumn);
    emit contentsChanged();
}

void ContentsModel::repaintFiles(const QVector<qint64> &fileIds)
{
    const QVector<int> rows = m_index.rowsOf(fileIds);
    // Only the column of the pictures: a view paints a single cell alone, but all it shows for more than one.
    if (rows.size() <= mostRunsOneByOne) {
        for (const int row : rows)
            emitPicturesChanged(row, row);
    } else {
        emitPicturesChanged(rows.first(), rows.last());
    }
}

void ContentsModel::repaintFile(qint64 fileId)
{
    const int row = rowOf(fileId);
    if (row >= 0)
        emitPicturesChanged(row, row);
}

void ContentsModel::repaintAll()
{
    if (!m_files.isEmpty())
        emitPicturesChanged(0, m_files.size() - 1);
}

void ContentsModel::emitPicturesChanged(int first, int last)
{
    emit dataChanged(index(first, ThumbnailColumn), index(last, ThumbnailColumn), {Qt::DecorationRole});
}

// Unchanged rows between many changed ones cost less than many signals.
void ContentsModel::emitRowsChanged(const QVector<int> &rows, int firstColumn, int lastColumn)
{
    if (RowRuns::count(rows) > mostRunsOneByOne) {
        emit dataChanged(index(rows.first(), firstColumn), index(rows.last(), lastColumn));
        return;
    }
    for (int last = rows.size() - 1; last >= 0;) {
        const int first = RowRuns::start(rows, last);
        emit dataChanged(index(rows.at(first), firstColumn), index(rows.at(last), lastColumn));
        last = first - 1;
    }
}

bool ContentsModel::isWorthOneLayoutChange(const QVector<int> &rows) const
{
    return rows.size() > mostRowsOneByOne || qint64(RowRuns::count(rows)) * m_files.size() > mostRowsVisited;
}

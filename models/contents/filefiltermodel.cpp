#include "models/contents/filefiltermodel.h"

#include "app/settings/viewsettings.h"
#include "models/contents/contentsmodel.h"

#include <algorithm>
#include <iterator>

namespace {

// The elements of a sorted vector that another one lacks.
std::vector<int> lackingIn(const std::vector<int> &other, const std::vector<int> &rows)
{
    std::vector<int> lacking;
    std::set_difference(rows.begin(), rows.end(), other.begin(), other.end(), std::back_inserter(lacking));
    return lacking;
}

} // namespace

FileFilterModel::FileFilterModel(QObject *parent) : RowProxyModel(parent) {}

void FileFilterModel::setSourceModel(QAbstractItemModel *sourceModel)
{
    beginResetModel();
    if (m_contents)
        disconnect(m_contents, nullptr, this, nullptr);
    m_contents = qobject_cast<ContentsModel *>(sourceModel);
    followSource(sourceModel);
    if (m_contents)
        connectContents();
    runSelection();
    showNewRows();
    endResetModel();
}

void FileFilterModel::connectContents()
{
    using Model = QAbstractItemModel;
    connect(m_contents, &Model::dataChanged, this, &FileFilterModel::sourceDataChanged);
    connect(m_contents, &Model::rowsInserted, this, &FileFilterModel::sourceRowsInserted);
    connect(m_contents, &Model::rowsAboutToBeRemoved, this, &FileFilterModel::sourceRowsAboutToBeRemoved);
    connect(m_contents, &Model::rowsRemoved, this, &FileFilterModel::sourceRowsRemoved);
    connect(m_contents, &Model::layoutAboutToBeChanged, this, &FileFilterModel::beginSourceLayoutChange);
    connect(m_contents, &Model::layoutChanged, this, &FileFilterModel::sourceLayoutChanged);
    connect(m_contents, &Model::modelAboutToBeReset, this, &FileFilterModel::beginResetModel);
    connect(m_contents, &Model::modelReset, this, &FileFilterModel::sourceReset);
    connect(m_contents, &ContentsModel::contentsChanged, this, &FileFilterModel::announceDTags);
}

void FileFilterModel::setSpecialNode(NodeType type)
{
    m_selection.setSpecialNode(type, ViewSettings::newFilesTimeout());
    applySelection();
}

void FileFilterModel::setTagRequirements(const TagRequirements &requirements)
{
    m_selection.setRequirements(requirements);
    applySelection();
}

void FileFilterModel::applySelection()
{
    runSelection();
    showChangesInOneGo();
    m_announcedDTags = dTags();
    emit dTagsChanged(m_announcedDTags);
}

void FileFilterModel::announceDTags()
{
    if (m_announcedDTags == dTags())
        return;
    m_announcedDTags = dTags();
    emit dTagsChanged(m_announcedDTags);
}

void FileFilterModel::runSelection()
{
    if (!m_contents) {
        m_newRows.clear();
        return;
    }
    m_selection.run(m_contents->fileIndex(), m_newRows);
    m_tagCounts.clear();
    m_seenRevision = m_contents->fileIndex().revision();
}

bool FileFilterModel::isUpToDate() const
{
    return m_contents && m_contents->fileIndex().revision() == m_seenRevision;
}

int FileFilterModel::shownWith(qint64 tagId) const
{
    if (!isUpToDate())
        return 0;
    const FileIndex &index = m_contents->fileIndex();
    const int number = index.tagNumber(tagId);
    if (number < 0)
        return 0;
    // A pass over tags has counted them by itself.
    if (nodeType() == TagNode)
        return m_selection.count(number);
    if (m_tagCounts.empty()) {
        m_tagCounts.resize(static_cast<size_t>(index.numberCount()));
        FileSelection::countTags(index, m_rows.data(), m_rows.data() + m_rows.size(), m_tagCounts);
    }
    return static_cast<int>(m_tagCounts[static_cast<size_t>(number)]);
}

void FileFilterModel::showNewRows()
{
    m_rows.swap(m_newRows);
    forgetAcceptedFiles();
}

// A change of layout leads views and proxies above to the rows that are left, and lets them look at all of
// them once.
void FileFilterModel::showChangesInOneGo()
{
    changeLayout([this] { showNewRows(); });
}

// After a change of few rows of the source: single ones go and come, as a rule none or one run.
void FileFilterModel::showChanges()
{
    constexpr size_t mostOneByOne = 32;
    if (m_newRows == m_rows)
        return;
    const std::vector<int> gone = lackingIn(m_newRows, m_rows);
    const std::vector<int> come = lackingIn(m_rows, m_newRows);
    const bool isOneRun =
        gone.empty() && !come.empty() && placeOf(come.front()) == static_cast<int>(m_rows.size());
    if (!isOneRun && gone.size() + come.size() > mostOneByOne) {
        showChangesInOneGo();
        return;
    }
    forgetAcceptedFiles();
    for (int row : gone) {
        const int place = placeOf(row);
        beginRemoveRows(QModelIndex(), place, place);
        m_rows.erase(m_rows.begin() + place);
        endRemoveRows();
    }
    if (isOneRun) {
        beginInsertRows(QModelIndex(), rowCount(), rowCount() + static_cast<int>(come.size()) - 1);
        m_rows.insert(m_rows.end(), come.begin(), come.end());
        endInsertRows();
        return;
    }
    for (int row : come) {
        const int place = placeOf(row);
        beginInsertRows(QModelIndex(), place, place);
        m_rows.insert(m_rows.begin() + place, row);
        endInsertRows();
    }
}

void FileFilterModel::sourceDataChanged(const QModelIndex &topLeft, const QModelIndex &bottomRight,
                                        const QVector<int> &roles)
{
    // Another picture moves no file, and the first of several signals finds all changes in the index.
    const bool isPicture = roles == QVector<int>{Qt::DecorationRole};
    if (!isPicture && m_contents->fileIndex().revision() != m_seenRevision) {
        runSelection();
        showChanges();
    }
    const int first = placeOf(topLeft.row());
    const int last = placeOf(bottomRight.row() + 1) - 1;
    if (first <= last)
        emit dataChanged(index(first, topLeft.column()), index(last, bottomRight.column()), roles);
}

// The source appends, so that no row gets another number.
void FileFilterModel::sourceRowsInserted()
{
    runSelection();
    showChanges();
}

void FileFilterModel::sourceRowsAboutToBeRemoved(const QModelIndex & /*parent*/, int first, int last)
{
    const int firstPlace = placeOf(first);
    const int lastPlace = placeOf(last + 1) - 1;
    m_isRemoving = firstPlace <= lastPlace;
    if (m_isRemoving)
        beginRemoveRows(QModelIndex(), firstPlace, lastPlace);
}

void FileFilterModel::sourceRowsRemoved(const QModelIndex & /*parent*/, int first, int last)
{
    const auto firstGone = m_rows.begin() + placeOf(first);
    const auto kept = m_rows.erase(firstGone, m_rows.begin() + placeOf(last + 1));
    std::for_each(kept, m_rows.end(), [first, last](int &row) { row -= last - first + 1; });
    forgetAcceptedFiles();
    if (m_isRemoving)
        endRemoveRows();
    m_isRemoving = false;
    runSelection();
    showChanges();
}

void FileFilterModel::sourceLayoutChanged()
{
    runSelection();
    showNewRows();
    endSourceLayoutChange();
}

void FileFilterModel::sourceReset()
{
    runSelection();
    showNewRows();
    endResetModel();
}

int FileFilterModel::placeOf(int contentsRow) const
{
    return static_cast<int>(std::lower_bound(m_rows.begin(), m_rows.end(), contentsRow) - m_rows.begin());
}

int FileFilterModel::rowOfContents(int contentsRow) const
{
    const int place = placeOf(contentsRow);
    return place < rowCount() && this->contentsRow(place) == contentsRow ? place : -1;
}

const QVector<qint64> &FileFilterModel::acceptedFiles() const
{
    if (m_areAcceptedFilesKnown)
        return m_acceptedFiles;
    m_acceptedFiles.resize(rowCount());
    if (m_contents) {
        const QVector<qint64> &ids = m_contents->fileIndex().ids();
        std::transform(m_rows.begin(), m_rows.end(), m_acceptedFiles.begin(),
                       [&ids](int row) { return ids.at(row); });
    }
    m_areAcceptedFilesKnown = true;
    return m_acceptedFiles;
}

void FileFilterModel::forgetAcceptedFiles()
{
    m_areAcceptedFilesKnown = false;
    m_areKindsKnown = false;
    m_tagCounts.clear();
}

const std::array<int, 256> &FileFilterModel::kindCounts() const
{
    const quint64 revision = m_contents ? m_contents->fileIndex().revision() : 0;
    if (m_areKindsKnown && m_kindsRevision == revision)
        return m_kindCounts;
    m_kindCounts.fill(0);
    m_size = 0;
    if (m_contents) {
        const quint8 *kinds = m_contents->fileIndex().kinds();
        const qint64 *sizes = m_contents->fileIndex().sizes();
        for (const int row : m_rows) {
            ++m_kindCounts[kinds[row]];
            m_size += sizes[row];
        }
    }
    m_areKindsKnown = true;
    m_kindsRevision = revision;
    return m_kindCounts;
}

qint64 FileFilterModel::acceptedSize() const
{
    kindCounts();
    return m_size;
}

const File *FileFilterModel::fileAt(int row) const
{
    return row >= 0 && row < rowCount() ? m_contents->fileAt(contentsRow(row)) : nullptr;
}

int FileFilterModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_rows.size());
}

QModelIndex FileFilterModel::mapToSource(const QModelIndex &proxyIndex) const
{
    if (!proxyIndex.isValid() || proxyIndex.row() >= rowCount())
        return {};
    return m_contents->index(contentsRow(proxyIndex.row()), proxyIndex.column());
}

QModelIndex FileFilterModel::mapFromSource(const QModelIndex &sourceIndex) const
{
    const int row = sourceIndex.isValid() ? rowOfContents(sourceIndex.row()) : -1;
    return row < 0 ? QModelIndex() : createIndex(row, sourceIndex.column());
}

void FileFilterModel::sort(int /*column*/, Qt::SortOrder /*order*/) {}

bool FileFilterModel::filterAcceptsRow(int sourceRow, const QModelIndex &sourceParent) const
{
    return !sourceParent.isValid() && isShown(sourceRow);
}

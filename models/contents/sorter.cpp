#include "models/contents/sorter.h"

#include "core/records/file.h"
#include "models/contents/contentsmodel.h"
#include "models/contents/filefiltermodel.h"

#include <QItemSelection>

#include <algorithm>
#include <array>

namespace {
constexpr int mostRowsOneByOne = 8;
}

Sorter::Sorter(QObject *parent) : RowProxyModel(parent)
{
    m_matcher.setCaseSensitivity(Qt::CaseInsensitive);
}

void Sorter::sort(int column, Qt::SortOrder order)
{
    // The state of a header that was stored by another version may name a column that there is not.
    m_rows.setColumn(column < ContentsModel::columnTotal ? column : -1, order);
    rearrange();
}

void Sorter::prepareFilterText(const QString &text)
{
    m_filterText = text;
    m_foldedText = SearchTexts::folded(text);
    m_matcher.setPattern(text);
}

const File *Sorter::fileAt(int row) const
{
    return row >= 0 && row < rowCount() ? m_filter->fileAt(m_rows.sourceRow(row)) : nullptr;
}

qint64 Sorter::idAt(int row) const
{
    return m_filter->contents()->fileIndex().idAt(m_filter->contentsRow(m_rows.sourceRow(row)));
}

bool Sorter::hasKind(const std::function<bool(int)> &isWanted, int firstRow, int lastRow) const
{
    const std::array<int, 256> &counts = m_filter->kindCounts();
    bool isAny = false;
    for (size_t kind = 0; kind < counts.size() && !isAny; ++kind)
        isAny = counts[kind] > 0 && isWanted(static_cast<int>(kind));
    const bool areAllRows = firstRow == 0 && lastRow == rowCount() - 1 && rowCount() == m_filter->rowCount();
    if (!isAny || areAllRows)
        return isAny;
    for (int row = firstRow; row <= lastRow; ++row) {
        if (isWanted(kindAt(row)))
            return true;
    }
    return false;
}

qint64 Sorter::sizeOf(int firstRow, int lastRow) const
{
    if (firstRow > lastRow)
        return 0;
    if (firstRow == 0 && lastRow == rowCount() - 1)
        return m_filter->acceptedSize();
    const qint64 *sizes = m_filter->contents()->fileIndex().sizes();
    qint64 size = 0;
    for (int row = firstRow; row <= lastRow; ++row)
        size += sizes[m_filter->contentsRow(m_rows.sourceRow(row))];
    return size;
}

int Sorter::kindAt(int row) const
{
    return m_filter->contents()->fileIndex().kinds()[m_filter->contentsRow(m_rows.sourceRow(row))];
}

void Sorter::keepTagsOf(int row, QVector<qint64> &tagIds) const
{
    const FileIndex &index = m_filter->contents()->fileIndex();
    const FileIndex::TagNumbers tags = index.tagsAt(m_filter->contentsRow(m_rows.sourceRow(row)));
    const auto isLacking = [&](qint64 tagId) {
        const int number = index.tagNumber(tagId);
        return number < 0 || std::find(tags.begin(), tags.end(), static_cast<quint32>(number)) == tags.end();
    };
    tagIds.erase(std::remove_if(tagIds.begin(), tagIds.end(), isLacking), tagIds.end());
}

QModelIndex Sorter::indexOf(qint64 fileId) const
{
    const ContentsModel *contents = m_filter ? m_filter->contents() : nullptr;
    return contents ? mapFromSource(m_filter->mapFromSource(contents->index(contents->rowOf(fileId), 0)))
                    : QModelIndex();
}

void Sorter::refreshTagNames()
{
    m_rows.forgetOrderOf(ContentsModel::TagsColumn);
    if (sortColumn() == ContentsModel::TagsColumn)
        rearrange();
    else
        showTagNames();
}

void Sorter::renameTags(const QVector<qint64> &tagIds)
{
    constexpr int column = ContentsModel::TagsColumn;
    if (!m_filter || !m_rows.knowsOrderOf(column)) {
        showTagNames();
        return;
    }
    const QVector<int> rows = m_filter->contents()->fileIndex().rowsWith(tagIds);
    m_rows.forgetRecords(rows);
    if (sortColumn() == column)
        placeAnew(rows);
    else
        showTagNames();
}

void Sorter::showTagNames()
{
    constexpr int column = ContentsModel::TagsColumn;
    // Straight from here: proxies below would look at every row again for a text that they do not read.
    if (rowCount() > 0)
        emit dataChanged(index(0, column), index(rowCount() - 1, column), {Qt::DisplayRole});
}

bool Sorter::isFoundIn(const QString &text) const
{
    // The matcher needs twice the time of a plain search for a single character.
    if (m_filterText.size() == 1)
        return text.contains(m_filterText.at(0), Qt::CaseInsensitive);
    return m_matcher.indexIn(text) >= 0;
}

bool Sorter::isMatch(const File &file) const
{
    return m_filterText.isEmpty() || isFoundIn(file.name()) || isFoundIn(file.description()) ||
           isFoundInIdCode(file);
}

// Without a text made for each of a million files.
bool Sorter::isFoundInIdCode(const File &file) const
{
    const char *own = file.ownIdCode();
    if (!own)
        return isFoundIn(file.idCode());
    QChar characters[8];
    int length = 0;
    while (length < 8 && own[length] != 0) {
        characters[length] = QLatin1Char(own[length]);
        ++length;
    }
    if (m_filterText.size() == 1)
        return QStringView(characters, length).contains(m_filterText.at(0), Qt::CaseInsensitive);
    return m_matcher.indexIn(characters, length) >= 0;
}

bool Sorter::filterAcceptsRow(int sourceRow, const QModelIndex &sourceParent) const
{
    const File *file = m_filter && !sourceParent.isValid() ? m_filter->fileAt(sourceRow) : nullptr;
    return file && isMatch(*file);
}

bool Sorter::lessThan(const QModelIndex &left, const QModelIndex &right) const
{
    return SortRanks::isLess(*m_filter->contents(), left.column(), m_filter->contentsRow(left.row()),
                             m_filter->contentsRow(right.row()));
}

// Makes the mapping anew out of what the source shows now.
void Sorter::arrange()
{
    m_changedRecords.clear();
    if (m_filterText.isEmpty() || !m_filter || !m_filter->contents())
        m_rows.arrangeAll();
    else
        m_rows.arrange(matchingRows());
}

/** The rows of the source that the text is found in. */
std::vector<int> Sorter::matchingRows() const
{
    const ContentsModel *contents = m_filter->contents();
    const int count = m_filter->rowCount();
    std::vector<int> rows;
    if (m_foldedText.empty()) {
        for (int row = 0; row < count; ++row) {
            if (isMatch(*m_filter->fileAt(row)))
                rows.push_back(row);
        }
        return rows;
    }
    rows =
        contents->searchTexts().find(m_foldedText, [&](int row) { return isMatch(*contents->fileAt(row)); });
    if (count == contents->rowCount())
        return rows;
    // Of two ascending lists, what is in both.
    auto kept = rows.begin();
    int row = 0;
    for (const int contentsRow : rows) {
        while (row < count && m_filter->contentsRow(row) < contentsRow)
            ++row;
        if (row < count && m_filter->contentsRow(row) == contentsRow)
            *kept++ = row;
    }
    rows.erase(kept, rows.end());
    return rows;
}

int Sorter::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : m_rows.count();
}

QModelIndex Sorter::mapToSource(const QModelIndex &proxyIndex) const
{
    if (!proxyIndex.isValid() || proxyIndex.row() >= rowCount())
        return {};
    return m_filter->index(m_rows.sourceRow(proxyIndex.row()), proxyIndex.column());
}

// The base class would make a list of indexes for each model on the way down.
QMimeData *Sorter::mimeData(const QModelIndexList &indexes) const
{
    if (!m_filter || !m_filter->contents())
        return nullptr;
    QVector<int> contentsRows;
    contentsRows.reserve(indexes.size());
    const int count = rowCount();
    for (const QModelIndex &index : indexes) {
        if (index.isValid() && index.row() < count)
            contentsRows.append(m_filter->contentsRow(m_rows.sourceRow(index.row())));
    }
    return m_filter->contents()->dragData(contentsRows);
}

QMimeData *Sorter::dragData(const QItemSelection &ranges) const
{
    if (!m_filter || !m_filter->contents())
        return nullptr;
    QVector<int> contentsRows;
    const int last = rowCount() - 1;
    for (const QItemSelectionRange &range : ranges) {
        for (int row = qMax(0, range.top()); row <= qMin(last, range.bottom()); ++row)
            contentsRows.append(m_filter->contentsRow(m_rows.sourceRow(row)));
    }
    return m_filter->contents()->dragData(contentsRows);
}

QModelIndex Sorter::mapFromSource(const QModelIndex &sourceIndex) const
{
    const int row = sourceIndex.isValid() ? m_rows.rowOf(sourceIndex.row()) : -1;
    return row < 0 ? QModelIndex() : createIndex(row, sourceIndex.column());
}

// Few rows come and go by the signals that every model has, many at once by one change of layout.

void Sorter::setSourceModel(QAbstractItemModel *sourceModel)
{
    beginResetModel();
    if (m_filter) {
        disconnect(m_filter, nullptr, this, nullptr);
        disconnect(m_filter->contents(), nullptr, this, nullptr);
    }
    m_filter = qobject_cast<FileFilterModel *>(sourceModel);
    m_rows.setSource(m_filter);
    followSource(sourceModel);
    if (m_filter)
        connectSource();
    arrange();
    endResetModel();
}

void Sorter::connectSource()
{
    using Model = QAbstractItemModel;
    const ContentsModel *contents = m_filter->contents();
    connect(contents, &ContentsModel::recordsChanged, this, [this](const QVector<int> &rows) {
        m_rows.forgetRecords(rows);
        m_changedRecords = rows;
    });
    connect(contents, &ContentsModel::tagsChanged, this, [this](const QVector<int> &rows) {
        if (!m_rows.knowsOrderOf(ContentsModel::TagsColumn))
            return;
        m_rows.forgetRecords(rows);
        m_changedRecords = rows;
    });
    connect(contents, &ContentsModel::recordsErased, this, [this](const QVector<int> &rows) {
        m_rows.eraseRecords(rows);
        m_changedRecords.clear();
    });
    connect(contents, &Model::modelAboutToBeReset, this, [this] { m_rows.forgetOrder(); });

    connect(m_filter, &Model::dataChanged, this, &Sorter::sourceDataChanged);
    connect(m_filter, &Model::rowsAboutToBeInserted, this, &Sorter::sourceRowsAboutToBeInserted);
    connect(m_filter, &Model::rowsInserted, this, &Sorter::sourceRowsInserted);
    connect(m_filter, &Model::rowsAboutToBeRemoved, this, &Sorter::sourceRowsAboutToBeRemoved);
    connect(m_filter, &Model::rowsRemoved, this, &Sorter::sourceRowsRemoved);
    connect(m_filter, &Model::layoutAboutToBeChanged, this, &Sorter::beginSourceLayoutChange);
    connect(m_filter, &Model::layoutChanged, this, &Sorter::sourceLayoutChanged);
    connect(m_filter, &Model::modelAboutToBeReset, this, &Sorter::beginResetModel);
    connect(m_filter, &Model::modelReset, this, &Sorter::sourceReset);
}

void Sorter::rearrange()
{
    changeLayout([this] { arrange(); });
}

void Sorter::placeAnew(const QVector<int> &contentsRows)
{
    QVector<int> shown;
    for (const int contentsRow : contentsRows) {
        const int source = m_filter->rowOfContents(contentsRow);
        if (source >= 0 && filterAcceptsRow(source, {}))
            shown.append(contentsRow);
    }
    changeLayout([&] { m_rows.placeAnew(shown); });
}

// Whether a row of the source is shown or hidden as it should be, and between the right neighbours.
bool Sorter::isInPlace(int sourceRow) const
{
    const int row = m_rows.rowOf(sourceRow);
    return (row >= 0) == filterAcceptsRow(sourceRow, {}) && (row < 0 || m_rows.isInPlace(row));
}

bool Sorter::areChangedRowsInPlace() const
{
    return m_rows.isWhole() ||
           std::all_of(m_changedRecords.cbegin(), m_changedRecords.cend(), [this](int contentsRow) {
               const int row = m_filter->rowOfContents(contentsRow);
               return row < 0 || isInPlace(row);
           });
}

void Sorter::sourceDataChanged(const QModelIndex &topLeft, const QModelIndex &bottomRight,
                               const QVector<int> &roles)
{
    // Another picture moves no file, and the first of several signals finds all that have changed.
    const bool isPicture = roles == QVector<int>{Qt::DecorationRole};
    if (!isPicture && !areChangedRowsInPlace())
        rearrange();
    if (!isPicture)
        m_changedRecords.clear();
    int first = topLeft.row();
    int last = bottomRight.row();
    if (!m_rows.isWhole()) {
        int lowest = rowCount();
        int highest = -1;
        for (int source = first; source <= last; ++source) {
            const int row = m_rows.rowOf(source);
            lowest = row < 0 ? lowest : qMin(lowest, row);
            highest = qMax(highest, row);
        }
        first = lowest;
        last = highest;
    }
    if (first <= last)
        emit dataChanged(index(first, topLeft.column()), index(last, bottomRight.column()), roles);
}

void Sorter::sourceRowsAboutToBeInserted(const QModelIndex & /*parent*/, int first, int last)
{
    if (m_rows.isWhole())
        beginInsertRows(QModelIndex(), first, last);
}

void Sorter::sourceRowsInserted(const QModelIndex & /*parent*/, int first, int last)
{
    if (m_rows.isWhole()) {
        endInsertRows();
        return;
    }
    m_rows.shiftForInserted(first, last);
    if (last - first >= mostRowsOneByOne) {
        rearrange();
        return;
    }
    for (int source = first; source <= last; ++source) {
        if (filterAcceptsRow(source, {}))
            insertRow(source);
    }
}

void Sorter::insertRow(int sourceRow)
{
    const int row = m_rows.placeFor(sourceRow);
    beginInsertRows(QModelIndex(), row, row);
    m_rows.insert(row, sourceRow);
    endInsertRows();
}

// The source has its rows until this is through, so that what is left can be shown meanwhile.
void Sorter::sourceRowsAboutToBeRemoved(const QModelIndex & /*parent*/, int first, int last)
{
    if (m_rows.isWhole()) {
        beginRemoveRows(QModelIndex(), first, last);
        return;
    }
    const std::vector<int> gone = m_rows.rowsShowing(first, last);
    for (size_t end = gone.size(); end > 0;) {
        size_t start = end - 1;
        while (start > 0 && gone[start - 1] == gone[start] - 1)
            --start;
        beginRemoveRows(QModelIndex(), gone[start], gone[end - 1]);
        m_rows.erase(gone[start], gone[end - 1]);
        endRemoveRows();
        end = start;
    }
}

void Sorter::sourceRowsRemoved(const QModelIndex & /*parent*/, int first, int last)
{
    if (m_rows.isWhole()) {
        endRemoveRows();
        return;
    }
    m_rows.shiftForRemoved(first, last);
}

void Sorter::sourceLayoutChanged()
{
    arrange();
    endSourceLayoutChange();
}

void Sorter::sourceReset()
{
    arrange();
    endResetModel();
}

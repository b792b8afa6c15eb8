#include "models/contents/sorter.h"

#include "core/records/file.h"
#include "models/contents/contentsmodel.h"
#include "models/contents/filefiltermodel.h"

#include <QItemSelection>

#include <algorithm>

Sorter::Sorter(QObject *parent) : RowProxyModel(parent)
{
    m_matcher.setCaseSensitivity(Qt::CaseInsensitive);
}

void Sorter::sort(int column, Qt::SortOrder order)
{
    m_column = column;
    m_sortOrder = order;
    rearrange();
}

void Sorter::setFilterText(const QString &text)
{
    if (m_filterText == text)
        return;
    prepareFilterText(text);
    rearrange();
}

void Sorter::prepareFilterText(const QString &text)
{
    m_filterText = text;
    m_matcher.setPattern(text);
}

const File *Sorter::fileAt(int row) const
{
    return row >= 0 && row < rowCount() ? m_filter->fileAt(sourceRow(row)) : nullptr;
}

qint64 Sorter::idAt(int row) const
{
    return m_filter->contents()->fileIndex().idAt(m_filter->contentsRow(sourceRow(row)));
}

int Sorter::kindAt(int row) const
{
    return m_filter->contents()->fileIndex().kinds()[m_filter->contentsRow(sourceRow(row))];
}

QModelIndex Sorter::indexOf(qint64 fileId) const
{
    const ContentsModel *contents = m_filter ? m_filter->contents() : nullptr;
    return contents ? mapFromSource(m_filter->mapFromSource(contents->index(contents->rowOf(fileId), 0)))
                    : QModelIndex();
}

void Sorter::refreshTagNames()
{
    if (m_ranks.column() == ContentsModel::TagsColumn)
        m_ranks.clear();
    if (m_column == ContentsModel::TagsColumn)
        rearrange();
    else
        showTagNames();
}

void Sorter::renameTags(const QVector<qint64> &tagIds)
{
    constexpr int column = ContentsModel::TagsColumn;
    if (!m_filter || (m_column != column && m_ranks.column() != column)) {
        showTagNames();
        return;
    }
    const QVector<int> rows = m_filter->contents()->fileIndex().rowsWith(tagIds);
    m_ranks.forget(rows);
    if (m_column == column)
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
    m_rowsOfSource.clear();
    m_changedRecords.clear();
    m_isWhole = m_filterText.isEmpty() && m_column < 0;
    m_rows.clear();
    if (m_isWhole || !m_filter) {
        m_rows.shrink_to_fit();
        return;
    }
    const int count = m_filter->rowCount();
    for (int row = 0; row < count; ++row) {
        if (m_filterText.isEmpty() || isMatch(*m_filter->fileAt(row)))
            m_rows.push_back(row);
    }
    if (m_column >= 0)
        putInOrder();
}

void Sorter::putInOrder()
{
    orderContentsRows([this] { m_ranks.sort(*m_filter->contents(), m_column, m_rows); });
}

// What puts the shown rows in ascending order has them as rows of the ContentsModel meanwhile: both models
// have files in the same order, but hidden ones have no row in the source.
void Sorter::orderContentsRows(const std::function<void()> &putInOrder)
{
    const int count = m_filter->rowCount();
    const bool isNoneHidden = count == m_filter->contents()->rowCount();
    std::vector<int> sourceRows(isNoneHidden ? 0 : static_cast<size_t>(m_filter->contents()->rowCount()));
    if (!isNoneHidden) {
        for (int row = 0; row < count; ++row)
            sourceRows[static_cast<size_t>(m_filter->contentsRow(row))] = row;
        for (int &row : m_rows)
            row = m_filter->contentsRow(row);
    }
    putInOrder();
    if (!isNoneHidden) {
        for (int &row : m_rows)
            row = sourceRows[static_cast<size_t>(row)];
    }
    if (m_sortOrder == Qt::DescendingOrder)
        std::reverse(m_rows.begin(), m_rows.end());
}

bool Sorter::isRowLess(int leftSourceRow, int rightSourceRow) const
{
    if (m_column < 0)
        return leftSourceRow < rightSourceRow;
    if (m_sortOrder == Qt::DescendingOrder)
        std::swap(leftSourceRow, rightSourceRow);
    return SortRanks::isLess(*m_filter->contents(), m_column, m_filter->contentsRow(leftSourceRow),
                             m_filter->contentsRow(rightSourceRow));
}

int Sorter::rowOfSource(int sourceRow) const
{
    if (m_isWhole)
        return sourceRow;
    if (m_column < 0) {
        const auto found = std::lower_bound(m_rows.begin(), m_rows.end(), sourceRow);
        const bool isShown = found != m_rows.end() && *found == sourceRow;
        return isShown ? static_cast<int>(found - m_rows.begin()) : -1;
    }
    if (m_rowsOfSource.empty()) {
        m_rowsOfSource.assign(static_cast<size_t>(m_filter->rowCount()), -1);
        int row = 0;
        for (const int source : m_rows)
            m_rowsOfSource[static_cast<size_t>(source)] = row++;
    }
    return sourceRow < static_cast<int>(m_rowsOfSource.size())
               ? m_rowsOfSource[static_cast<size_t>(sourceRow)]
               : -1;
}

int Sorter::rowCount(const QModelIndex &parent) const
{
    if (parent.isValid() || !m_filter)
        return 0;
    return m_isWhole ? m_filter->rowCount() : static_cast<int>(m_rows.size());
}

QModelIndex Sorter::mapToSource(const QModelIndex &proxyIndex) const
{
    if (!proxyIndex.isValid() || proxyIndex.row() >= rowCount())
        return {};
    return m_filter->index(sourceRow(proxyIndex.row()), proxyIndex.column());
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
            contentsRows.append(m_filter->contentsRow(sourceRow(index.row())));
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
            contentsRows.append(m_filter->contentsRow(sourceRow(row)));
    }
    return m_filter->contents()->dragData(contentsRows);
}

QModelIndex Sorter::mapFromSource(const QModelIndex &sourceIndex) const
{
    const int row = sourceIndex.isValid() ? rowOfSource(sourceIndex.row()) : -1;
    return row < 0 ? QModelIndex() : createIndex(row, sourceIndex.column());
}

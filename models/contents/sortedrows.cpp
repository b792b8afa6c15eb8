#include "models/contents/sortedrows.h"

#include "models/contents/contentsmodel.h"
#include "models/contents/filefiltermodel.h"
#include "models/contents/sortkeys.h"

#include <algorithm>
#include <numeric>
#include <utility>

void SortedRows::setSource(const FileFilterModel *source)
{
    m_source = source;
    m_ranks.clear();
}

void SortedRows::setColumn(int column, Qt::SortOrder order)
{
    m_column = column;
    m_sortOrder = order;
}

void SortedRows::forgetOrderOf(int column)
{
    if (m_ranks.column() == column)
        m_ranks.clear();
}

void SortedRows::arrangeAll()
{
    m_isWhole = m_column < 0;
    m_rowsOfSource.clear();
    m_rows.clear();
    if (m_isWhole || !m_source) {
        m_rows.shrink_to_fit();
        return;
    }
    m_rows.resize(static_cast<size_t>(m_source->rowCount()));
    std::iota(m_rows.begin(), m_rows.end(), 0);
    sortRows();
}

void SortedRows::arrange(std::vector<int> &&acceptedRows)
{
    m_isWhole = false;
    m_rowsOfSource.clear();
    m_rows = std::move(acceptedRows);
    sortRows();
}

void SortedRows::sortRows()
{
    if (m_column >= 0)
        orderContentsRows([this] { m_ranks.sort(*m_source->contents(), m_column, m_rows); });
}

// What puts the shown rows in ascending order has them as rows of the ContentsModel meanwhile: both models
// have files in the same order, but hidden ones have no row in the source.
void SortedRows::orderContentsRows(const std::function<void()> &putInOrder)
{
    const int count = m_source->rowCount();
    const bool isNoneHidden = count == m_source->contents()->rowCount();
    std::vector<int> sourceRows(isNoneHidden ? 0 : static_cast<size_t>(m_source->contents()->rowCount()));
    if (!isNoneHidden) {
        for (int row = 0; row < count; ++row)
            sourceRows[static_cast<size_t>(m_source->contentsRow(row))] = row;
        for (int &row : m_rows)
            row = m_source->contentsRow(row);
    }
    putInOrder();
    if (!isNoneHidden) {
        for (int &row : m_rows)
            row = sourceRows[static_cast<size_t>(row)];
    }
    if (m_sortOrder == Qt::DescendingOrder)
        std::reverse(m_rows.begin(), m_rows.end());
}

int SortedRows::count() const
{
    if (!m_source)
        return 0;
    return m_isWhole ? m_source->rowCount() : static_cast<int>(m_rows.size());
}

int SortedRows::rowOf(int sourceRow) const
{
    if (m_isWhole)
        return sourceRow;
    // Rows in the order of their arrival ascend. For sorted ones the way back is made when it is first asked
    // for.
    if (m_column < 0) {
        const auto found = std::lower_bound(m_rows.begin(), m_rows.end(), sourceRow);
        const bool isShown = found != m_rows.end() && *found == sourceRow;
        return isShown ? static_cast<int>(found - m_rows.begin()) : -1;
    }
    if (m_rowsOfSource.empty()) {
        m_rowsOfSource.assign(static_cast<size_t>(m_source->rowCount()), -1);
        int row = 0;
        for (const int source : m_rows)
            m_rowsOfSource[static_cast<size_t>(source)] = row++;
    }
    return sourceRow < static_cast<int>(m_rowsOfSource.size())
               ? m_rowsOfSource[static_cast<size_t>(sourceRow)]
               : -1;
}

bool SortedRows::isLess(int leftSourceRow, int rightSourceRow) const
{
    if (m_column < 0)
        return leftSourceRow < rightSourceRow;
    if (m_sortOrder == Qt::DescendingOrder)
        std::swap(leftSourceRow, rightSourceRow);
    return SortRanks::isLess(*m_source->contents(), m_column, m_source->contentsRow(leftSourceRow),
                             m_source->contentsRow(rightSourceRow));
}

bool SortedRows::isInPlace(int row) const
{
    if (m_column < 0)
        return true;
    const bool isAfterPrevious = row == 0 || isLess(sourceRow(row - 1), sourceRow(row));
    return isAfterPrevious && (row + 1 == count() || isLess(sourceRow(row), sourceRow(row + 1)));
}

void SortedRows::placeAnew(const QVector<int> &contentsRows)
{
    std::vector<char> isMoved(static_cast<size_t>(m_source->rowCount()));
    for (const int contentsRow : contentsRows)
        isMoved[static_cast<size_t>(m_source->rowOfContents(contentsRow))] = 1;
    const auto hasMoved = [&](int source) { return isMoved[static_cast<size_t>(source)] != 0; };
    m_rows.erase(std::remove_if(m_rows.begin(), m_rows.end(), hasMoved), m_rows.end());
    if (m_sortOrder == Qt::DescendingOrder)
        std::reverse(m_rows.begin(), m_rows.end());
    orderContentsRows([&] {
        SortKeys::merge(*m_source->contents(), m_column, m_rows,
                        std::vector<int>(contentsRows.begin(), contentsRows.end()));
    });
    m_rowsOfSource.clear();
}

void SortedRows::shiftForInserted(int first, int last)
{
    const int count = last - first + 1;
    for (int &source : m_rows)
        source += source >= first ? count : 0;
    m_rowsOfSource.clear();
}

void SortedRows::shiftForRemoved(int first, int last)
{
    const int count = last - first + 1;
    for (int &source : m_rows)
        source -= source > last ? count : 0;
    m_rowsOfSource.clear();
}

int SortedRows::placeFor(int sourceRow) const
{
    const auto place = std::lower_bound(m_rows.begin(), m_rows.end(), sourceRow,
                                        [this](int left, int right) { return isLess(left, right); });
    return static_cast<int>(place - m_rows.begin());
}

void SortedRows::insert(int row, int sourceRow)
{
    m_rows.insert(m_rows.begin() + row, sourceRow);
    m_rowsOfSource.clear();
}

std::vector<int> SortedRows::rowsShowing(int firstSourceRow, int lastSourceRow) const
{
    std::vector<int> rows;
    for (int source = firstSourceRow; source <= lastSourceRow; ++source) {
        const int row = rowOf(source);
        if (row >= 0)
            rows.push_back(row);
    }
    std::sort(rows.begin(), rows.end());
    return rows;
}

void SortedRows::erase(int first, int last)
{
    m_rows.erase(m_rows.begin() + first, m_rows.begin() + last + 1);
    m_rowsOfSource.clear();
}

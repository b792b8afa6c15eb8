#include "models/contents/sortranks.h"

#include "models/contents/contentsmodel.h"
#include "models/contents/sortkeys.h"

#include <algorithm>
#include <cmath>

namespace {
// Fewer rows are sorted in no time by their values, and need no table as long as all files.
constexpr size_t fewestRankedRows = 1000;
} // namespace

bool SortRanks::isLess(const ContentsModel &contents, int column, int leftRow, int rightRow)
{
    return SortKeys::isLess(contents, column, leftRow, rightRow);
}

void SortRanks::clear()
{
    m_column = -1;
    m_order = {};
    m_ranks = {};
}

void SortRanks::sort(const ContentsModel &contents, int column, std::vector<int> &rows)
{
    if (column != m_column && rows.size() < fewestRankedRows) {
        SortKeys::sort(contents, column, rows);
        return;
    }
    if (column != m_column)
        clear();
    m_column = column;
    m_ranks.resize(static_cast<size_t>(contents.rowCount()), -1);
    std::vector<int> unranked;
    std::copy_if(rows.begin(), rows.end(), std::back_inserter(unranked),
                 [this](int row) { return !isRanked(row); });
    if (!unranked.empty())
        rankAlso(contents, unranked);
    pick(rows);
}

void SortRanks::rankAlso(const ContentsModel &contents, const std::vector<int> &rows)
{
    dropForgotten();
    SortKeys::merge(contents, m_column, m_order, rows);
    numberRows();
}

// Rows that are wanted, out of the order: by a look at all of it, or, when they are few, by their ranks.
void SortRanks::pick(std::vector<int> &rows) const
{
    const double comparisons = double(rows.size()) * std::log2(double(rows.size()) + 1);
    if (comparisons < double(m_order.size())) {
        std::sort(rows.begin(), rows.end(), [this](int left, int right) {
            return m_ranks[static_cast<size_t>(left)] < m_ranks[static_cast<size_t>(right)];
        });
        return;
    }
    std::vector<char> isWanted(m_order.size());
    for (const int row : rows)
        isWanted[static_cast<size_t>(m_ranks[static_cast<size_t>(row)])] = 1;
    auto target = rows.begin();
    for (size_t rank = 0; rank < m_order.size(); ++rank) {
        if (isWanted[rank])
            *target++ = m_order[rank];
    }
}

void SortRanks::forget(const QVector<int> &rows)
{
    for (const int row : rows) {
        if (row < static_cast<int>(m_ranks.size()))
            m_ranks[static_cast<size_t>(row)] = -1;
    }
}

void SortRanks::erase(const QVector<int> &rows)
{
    if (m_ranks.empty())
        return;
    forget(rows);
    dropForgotten();
    std::vector<int> newRows(m_ranks.size());
    auto gone = rows.cbegin();
    int newRow = 0;
    for (int row = 0; row < static_cast<int>(newRows.size()); ++row) {
        newRows[static_cast<size_t>(row)] = newRow;
        if (gone != rows.cend() && *gone == row)
            ++gone;
        else
            ++newRow;
    }
    for (int &row : m_order)
        row = newRows[static_cast<size_t>(row)];
    m_ranks.assign(static_cast<size_t>(newRow), -1);
    numberRows();
}

void SortRanks::dropForgotten()
{
    const auto isForgotten = [this](int row) { return !isRanked(row); };
    m_order.erase(std::remove_if(m_order.begin(), m_order.end(), isForgotten), m_order.end());
}

void SortRanks::numberRows()
{
    int rank = 0;
    for (const int row : m_order)
        m_ranks[static_cast<size_t>(row)] = rank++;
}

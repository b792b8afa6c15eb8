#pragma once

#include <QVector>

#include <vector>

class ContentsModel;
class File;

/**
 * The places of files in the order of one column, found by one sort of plain values. A view sorts by asking
 * for pairs, some twenty times a row: with a place a row each answer is a comparison of two numbers. GUI
 * thread.
 */
class SortRanks
{
public:
    /** The order that the ranks stand for: the record's own values, equal ones by the id of the file. */
    static bool isLess(const ContentsModel &contents, int column, int leftRow, int rightRow);

    void clear();
    int column() const { return m_column; }
    /** -1 for a row without one. Rows are those of the ContentsModel. */
    int rankOf(int row) const
    {
        const auto at = static_cast<size_t>(row);
        return at < m_ranks.size() ? m_ranks[at] : -1;
    }
    bool hasAll(const std::vector<int> &rows) const;
    /** These rows have other values now. The order of the remaining ones stands. */
    void forget(int firstRow, int lastRow);
    /** Ranks these rows and no others. */
    void rank(const ContentsModel &contents, int column, const std::vector<int> &rows);

private:
    int m_column = -1;
    std::vector<int> m_ranks;
};

#pragma once

#include <QVector>

#include <vector>

class ContentsModel;

/**
 * Puts files into the order of one column and remembers their places. What was sorted once is not compared
 * again: later selections are picked out of the order, and files that came or changed are searched their
 * places in it one by one. Rows are those of the ContentsModel. GUI thread.
 */
class SortRanks
{
public:
    /** The order that the ranks stand for: the record's own values, equal ones by the id of the file. */
    static bool isLess(const ContentsModel &contents, int column, int leftRow, int rightRow);

    void clear();
    int column() const { return m_column; }
    /** Takes rows in any order, each once, and leaves them in that of the column. */
    void sort(const ContentsModel &contents, int column, std::vector<int> &rows);
    /** These rows have other values now. The order of the remaining ones stands. */
    void forget(const QVector<int> &rows);
    /** These rows, ascending, are gone, and those behind them have moved up. */
    void erase(const QVector<int> &rows);

private:
    bool isRanked(int row) const { return m_ranks[static_cast<size_t>(row)] >= 0; }
    void rankAlso(const ContentsModel &contents, const std::vector<int> &rows);
    void dropForgotten();
    void numberRows();
    void pick(std::vector<int> &rows) const;

    int m_column = -1;
    std::vector<int> m_order; // rows that have been sorted; a forgotten one stays until the next sort
    std::vector<int> m_ranks; // by row: its place in the order, -1 without one
};

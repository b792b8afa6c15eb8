#pragma once

#include "models/contents/sortranks.h"

#include <QVector>

#include <functional>
#include <vector>

class FileFilterModel;

/**
 * Which rows of a FileFilterModel are shown, and in which order: that of a column, or of their arrival. It
 * takes changes in without comparing what stands in order already. Whoever owns it tells it of each change of
 * the source, and others what becomes of the rows. GUI thread.
 */
class SortedRows
{
public:
    /** Null for none; to be arranged afterwards, as after each setter. */
    void setSource(const FileFilterModel *source);
    /** -1 for the order of arrival. */
    void setColumn(int column, Qt::SortOrder order);
    int column() const { return m_column; }
    Qt::SortOrder sortOrder() const { return m_sortOrder; }

    /** Takes the source as it is now: all of its rows, or of them those that are accepted, ascending. */
    void arrangeAll();
    void arrange(std::vector<int> &&acceptedRows);
    /** Whether all rows of the source are shown as they stand there, which needs no list. */
    bool isWhole() const { return m_isWhole; }
    int count() const;
    int sourceRow(int row) const { return m_isWhole ? row : m_rows[static_cast<size_t>(row)]; }
    /** -1 for a row that is not shown. */
    int rowOf(int sourceRow) const;

    // What was sorted once, by rows of the ContentsModel; it outlives other selections and other columns.
    bool knowsOrderOf(int column) const { return m_column == column || m_ranks.column() == column; }
    void forgetOrderOf(int column);
    void forgetOrder() { m_ranks.clear(); }
    /** These have other values now. */
    void forgetRecords(const QVector<int> &contentsRows) { m_ranks.forget(contentsRows); }
    /** These, ascending, are gone. */
    void eraseRecords(const QVector<int> &contentsRows) { m_ranks.erase(contentsRows); }

    /** Whether a shown row stands between the right neighbours. */
    bool isInPlace(int row) const;
    /** Takes shown files out of the order and puts them where they belong, among the others as they stand. */
    void placeAnew(const QVector<int> &contentsRows);

    // The following are for lists, not for the whole source.
    /** Makes room for the numbers of rows that the source has got; they are not shown yet. */
    void shiftForInserted(int first, int last);
    /** Closes the gap in the numbers; the rows must not be shown any more. */
    void shiftForRemoved(int first, int last);
    /** Where a row that is not shown belongs. */
    int placeFor(int sourceRow) const;
    void insert(int row, int sourceRow);
    /** The rows, ascending, that show some of the source. */
    std::vector<int> rowsShowing(int firstSourceRow, int lastSourceRow) const;
    void erase(int first, int last);

private:
    void sortRows();
    void orderContentsRows(const std::function<void()> &putInOrder);
    bool isLess(int leftSourceRow, int rightSourceRow) const;

    const FileFilterModel *m_source = nullptr;
    int m_column = -1;
    Qt::SortOrder m_sortOrder = Qt::AscendingOrder;
    SortRanks m_ranks;
    bool m_isWhole = true;
    std::vector<int> m_rows;
    mutable std::vector<int> m_rowsOfSource; // empty when it has to be made anew
};

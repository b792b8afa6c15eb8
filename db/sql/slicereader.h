#pragma once

#include "db/sql/tabledata.h"

#include <functional>

class QSqlQuery;

/** Receives rows that are lent: they are filled anew for the next slice. It runs no statement of its own. */
using SliceTaker = std::function<void(const TableData &)>;

/** What the slices of a joined result leave out. */
struct SliceKey
{
    int keyColumn = -1;         ///< position of the key, a number; -1 fills every column of every row
    QVector<int> newKeyColumns; ///< positions that every row carries
};

/**
 * Hands a result on in slices of a bounded size. It makes the rows of one slice and fills them again and
 * again, as a row object per row of a million costs more time and memory than all the rest. Lives for one
 * reading; BaseDBProvider::runSyncInSlices and runSyncJoined are its users.
 */
class SliceReader
{
public:
    SliceReader(int sliceRows, const SliceTaker &take);
    ~SliceReader();
    SliceReader(const SliceReader &) = delete;
    SliceReader &operator=(const SliceReader &) = delete;

    /** Reads an executed query to its end, or to an error that its lastError() tells. */
    void read(QSqlQuery &query, const SliceKey &key);
    /** Reads two executed queries, both ordered by their first column, as one LEFT JOIN. */
    void readJoined(QSqlQuery &query, QSqlQuery &links, const QStringList &linkColumns);

private:
    TableRowData &nextRow();
    void fillWhole(TableRowData &row, const QSqlQuery &query, int columns);
    void fillPartly(TableRowData &row, const QSqlQuery &query, const QVector<int> &columns);
    void fillLink(TableRowData &row, const QSqlQuery &links, int firstColumn);
    void finish(bool success);

    const SliceTaker &m_take;
    int m_sliceRows;
    int m_filled = 0;
    QStringList m_columns;
    TableData m_rows;
};

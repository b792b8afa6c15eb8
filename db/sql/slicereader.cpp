#include "db/sql/slicereader.h"

#include "db/sql/drivertexts.h"
#include "db/sql/queryrunner.h"

#include <QSqlError>
#include <QSqlQuery>

SliceReader::SliceReader(int sliceRows, const SliceTaker &take)
    : m_take(take), m_sliceRows(qMax(1, sliceRows))
{
}

SliceReader::~SliceReader()
{
    qDeleteAll(m_rows);
}

void SliceReader::read(QSqlQuery &query, const SliceKey &key)
{
    m_columns = QueryRunner::columnNames(query);
    bool hasKey = false;
    qint64 lastKey = 0;
    while (query.next()) {
        TableRowData &row = nextRow();
        const qint64 rowKey = key.keyColumn >= 0 ? query.value(key.keyColumn).toLongLong() : 0;
        if (hasKey && rowKey == lastKey)
            fillPartly(row, query, key.newKeyColumns);
        else
            fillWhole(row, query, m_columns.size());
        hasKey = key.keyColumn >= 0;
        lastKey = rowKey;
    }
    finish(!query.lastError().isValid());
}

void SliceReader::readJoined(QSqlQuery &query, QSqlQuery &links, const QStringList &linkColumns)
{
    m_columns = QueryRunner::columnNames(query);
    const int ownColumns = m_columns.size();
    m_columns += linkColumns.mid(1);
    const QVector<int> keyOnly{0};
    // Both queries are in the order of the key, so that each is read once, side by side.
    bool hasLink = links.next();
    qint64 linkKey = hasLink ? links.value(0).toLongLong() : 0;
    const auto nextLink = [&] {
        hasLink = links.next();
        linkKey = hasLink ? links.value(0).toLongLong() : 0;
    };
    while (query.next()) {
        const qint64 key = query.value(0).toLongLong();
        // Orphans, whose record is gone, must not hold up those behind them.
        while (hasLink && linkKey < key)
            nextLink();
        TableRowData &row = nextRow();
        fillWhole(row, query, ownColumns);
        if (!hasLink || linkKey != key) {
            for (int i = ownColumns; i < m_columns.size(); ++i)
                row.setAt(i, QVariant(QVariant::LongLong));
            continue;
        }
        fillLink(row, links, ownColumns);
        nextLink();
        // Whoever takes the rows knows the record by now: more than its key would be read for nothing.
        while (hasLink && linkKey == key) {
            TableRowData &further = nextRow();
            fillPartly(further, query, keyOnly);
            fillLink(further, links, ownColumns);
            nextLink();
        }
    }
    finish(!query.lastError().isValid() && !links.lastError().isValid());
}

/** The next row to fill; a full slice goes out first. */
TableRowData &SliceReader::nextRow()
{
    if (m_filled == m_sliceRows) {
        m_take(m_rows);
        m_filled = 0;
    }
    if (m_filled == m_rows.size())
        m_rows.append(new TableRowData(m_columns));
    return *m_rows.at(m_filled++);
}

void SliceReader::fillWhole(TableRowData &row, const QSqlQuery &query, int columns)
{
    for (int i = 0; i < columns; ++i)
        row.setAt(i, DriverTexts::read(query, i));
}

void SliceReader::fillPartly(TableRowData &row, const QSqlQuery &query, const QVector<int> &columns)
{
    row.clearValues();
    for (const int column : columns)
        row.setAt(column, DriverTexts::read(query, column));
}

void SliceReader::fillLink(TableRowData &row, const QSqlQuery &links, int firstColumn)
{
    for (int i = firstColumn; i < m_columns.size(); ++i)
        row.setAt(i, DriverTexts::read(links, i - firstColumn + 1));
}

/** Hands on the rest; of a reading that broke off, the rows of the unfinished slice are dropped. */
void SliceReader::finish(bool success)
{
    if (success && m_filled > 0)
        m_take(m_rows.mid(0, m_filled));
    m_filled = 0;
}

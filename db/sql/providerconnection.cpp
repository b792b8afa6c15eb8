#include "db/sql/providerconnection.h"

#include "db/sql/basedbprovider.h"

namespace {
/** Frees the rows of the table. */
QVector<QVariantList> valuesOf(const TableData &table)
{
    QVector<QVariantList> rows;
    rows.reserve(table.size());
    for (const TableRowData *row : table) {
        QVariantList read;
        read.reserve(row->columns().size());
        for (int i = 0; i < row->columns().size(); ++i)
            read.append(row->at(i));
        rows.append(read);
    }
    qDeleteAll(table);
    return rows;
}
} // namespace

bool ProviderConnection::run(const QString &statement) const
{
    return m_provider->runSync(statement, m_name);
}

bool ProviderConnection::runWithBlob(const QString &statement, const QByteArray &blob,
                                     const QString &placeholder) const
{
    return m_provider->runWithBlob(statement, blob, placeholder, m_name);
}

bool ProviderConnection::runPrepared(const QString &statement, const QVariantList &values) const
{
    return m_provider->runPrepared(statement, values, m_name);
}

bool ProviderConnection::readRow(const QString &statement, const QVariantList &values,
                                 QVariantList &row) const
{
    QVector<QVariantList> rows;
    if (!readRows(statement, values, rows) || rows.isEmpty())
        return false;
    row = rows.first();
    return true;
}

bool ProviderConnection::readRows(const QString &statement, const QVariantList &values,
                                  QVector<QVariantList> &rows) const
{
    TableData table;
    const bool isRead = m_provider->runPrepared(statement, values, table, m_name);
    rows = valuesOf(table);
    return isRead;
}

bool ProviderConnection::readOnce(const QString &statement, QVector<QVariantList> &rows) const
{
    TableData table;
    const bool isRead = m_provider->runSync(statement, table, m_name);
    rows = valuesOf(table);
    return isRead;
}

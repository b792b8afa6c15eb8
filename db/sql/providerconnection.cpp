#include "db/sql/providerconnection.h"

#include "db/sql/basedbprovider.h"

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
    TableData table;
    if (!m_provider->runPrepared(statement, values, table, m_name) || table.isEmpty())
        return false;
    const TableRowData &first = *table.first();
    row.clear();
    row.reserve(first.columns().size());
    for (int i = 0; i < first.columns().size(); ++i)
        row.append(first.at(i));
    freeRows(table);
    return true;
}

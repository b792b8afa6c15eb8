#pragma once

#include <QStringList>
#include <QVariant>
#include <QVector>

/** New rows of several tables that a server gets together: one INSERT a table. */
class GatheredRows
{
public:
    /** `into` is "INSERT INTO table (columns)"; `values` are those of whole rows, one row behind the other.
     */
    void add(const QString &into, int columns, const QVariantList &values);
    /** The statements for all of them, which are forgotten. The first tables come first. */
    QStringList take();
    void clear() { m_tables.clear(); }

private:
    struct Table
    {
        QString into;
        QString rows;
    };
    QVector<Table> m_tables; // a handful
};

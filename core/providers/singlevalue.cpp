#include "core/providers/singlevalue.h"

#include "db/sql/basedbprovider.h"

QVariant SingleValue::read(BaseDBProvider &provider, const QString &statement)
{
    TableData table;
    QVariant value;
    if (provider.runSync(statement, table) && !table.isEmpty())
        value = table.constFirst()->at(0);
    freeRows(table);
    return value;
}

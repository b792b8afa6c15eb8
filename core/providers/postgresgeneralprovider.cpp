#include "core/providers/postgresgeneralprovider.h"

#include "db/changestamp.h"

PostgresGeneralProvider::PostgresGeneralProvider(const AbstractQueryConstructor *constructor, QObject *parent)
    : GeneralProvider(constructor, parent)
{
}

bool PostgresGeneralProvider::lastChangeDate(QDateTime &date)
{
    TableData table;
    const bool ok = runSync(ChangeStamp::query(*constructor()), table);
    date = ChangeStamp::of(table);
    freeRows(table);
    return ok;
}

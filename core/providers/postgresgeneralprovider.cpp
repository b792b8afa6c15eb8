#include "core/providers/postgresgeneralprovider.h"

#include "db/abstractqueryconstructor.h"

PostgresGeneralProvider::PostgresGeneralProvider(const AbstractQueryConstructor *constructor, QObject *parent)
    : GeneralProvider(constructor, parent)
{
}

bool PostgresGeneralProvider::lastChangeDate(QDateTime &date)
{
    TableData table;
    const bool ok = runSync(constructor()->selectQuery({QStringLiteral("max(last_date)")},
                                                       QStringLiteral("tables_modification_date")) +
                                constructor()->statementEnd(),
                            table);
    date = table.isEmpty() ? QDateTime() : table.constFirst()->at(0).toDateTime();
    // The driver takes the stamp for a local time, of which there is none in the hour that summer time skips.
    date.setTimeSpec(Qt::UTC);
    freeRows(table);
    return ok;
}

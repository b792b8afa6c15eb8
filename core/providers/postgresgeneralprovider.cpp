#include "core/providers/postgresgeneralprovider.h"

#include "db/sql/abstractqueryconstructor.h"
#include "db/sql/changestamp.h"

PostgresGeneralProvider::PostgresGeneralProvider(const AbstractQueryConstructor *constructor, QObject *parent)
    : GeneralProvider(constructor, parent)
{
}

bool PostgresGeneralProvider::readLastChanges(Changes &changes)
{
    // By name in a document, as a database that was set up long ago has stamps without the column.
    const QString query = QStringLiteral(
        "SELECT max(last_date), max(last_date) FILTER (WHERE to_jsonb(stamps)->'client' IS DISTINCT FROM "
        "to_jsonb(current_setting('vorna.client', true))), "
        "bool_and(to_jsonb(stamps)->'client' IS NOT NULL) FROM tables_modification_date AS stamps");
    TableData table;
    const bool ok = runSync(query + constructor()->statementEnd(), table);
    changes.ofAll = ChangeStamp::of(table);
    changes.ofOthers = ChangeStamp::of(table, 1);
    changes.areNamed = !table.isEmpty() && table.constFirst()->at(2).toBool();
    freeRows(table);
    return ok;
}

bool PostgresGeneralProvider::lastChangeDate(QDateTime &date)
{
    TableData table;
    const bool ok = runSync(ChangeStamp::query(*constructor()), table);
    date = ChangeStamp::of(table);
    freeRows(table);
    return ok;
}

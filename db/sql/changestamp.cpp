#include "db/sql/changestamp.h"

#include "db/sql/abstractqueryconstructor.h"

QString ChangeStamp::query(const AbstractQueryConstructor &constructor)
{
    return constructor.selectQuery({QStringLiteral("max(last_date)")},
                                   QStringLiteral("tables_modification_date")) +
           constructor.statementEnd();
}

QDateTime ChangeStamp::of(const TableData &table, int column)
{
    QDateTime date = table.isEmpty() ? QDateTime() : table.constFirst()->at(column).toDateTime();
    // The driver takes the stamp for a local time, of which there is none in the hour that summer time skips.
    date.setTimeSpec(Qt::UTC);
    return date;
}

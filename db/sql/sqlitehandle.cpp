#include "db/sql/sqlitehandle.h"

#include <QSqlDatabase>
#include <QSqlDriver>
#include <QSqlQuery>
#include <QVariant>

#include <sqlite3.h>

sqlite3 *sqliteHandle(const QSqlDatabase &database)
{
    const QVariant handle = database.isOpen() ? database.driver()->handle() : QVariant();
    if (!handle.isValid() || qstrcmp(handle.typeName(), "sqlite3*") != 0)
        return nullptr;
    QSqlQuery query(database);
    const bool isSame = query.exec(QStringLiteral("SELECT sqlite_source_id();")) && query.next() &&
                        query.value(0).toString() == QLatin1String(sqlite3_sourceid());
    return isSame ? *static_cast<sqlite3 *const *>(handle.constData()) : nullptr;
}

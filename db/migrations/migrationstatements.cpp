#include "db/migrations/migrationstatements.h"

#include "db/sql/schema.h"

#include <QDebug>
#include <QSqlQuery>

namespace MigrationStatements {
bool run(const QSqlDatabase &database, const QStringList &statements, const FailureLog &log)
{
    QSqlQuery query(database);
    for (const QString &statement : statements) {
        if (!query.exec(statement)) {
            log(query.lastError(), statement);
            return false;
        }
    }
    return true;
}

bool runAsOne(QSqlDatabase database, const QStringList &statements, const FailureLog &log)
{
    if (!database.transaction()) {
        log(database.lastError(), QString());
        return false;
    }
    if (!run(database, statements, log)) {
        database.rollback();
        return false;
    }
    if (!database.commit()) {
        log(database.lastError(), QString());
        database.rollback();
        return false;
    }
    return true;
}

QStringList programStamp(const QString &version)
{
    return {QStringLiteral("DELETE FROM vorna_version;"), Schema::programVersionInsert(version)};
}

QStringList schemaStamp(const QSqlDatabase &database, const QString &version)
{
    const QString emptied = hasTable(database, QStringLiteral("scheme_version"))
                                ? QStringLiteral("DELETE FROM scheme_version;")
                                : QStringLiteral("CREATE TABLE scheme_version (version TEXT);");
    return {emptied, Schema::schemaVersionInsert(version)};
}

bool hasTable(const QSqlDatabase &database, const QString &table)
{
    return database.tables(QSql::Tables).contains(table);
}

FailureLog logAs(const char *name)
{
    return [name](const QSqlError &error, const QString &) { qDebug() << name << error.text(); };
}
} // namespace MigrationStatements

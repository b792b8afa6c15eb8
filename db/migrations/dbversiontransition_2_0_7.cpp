#include "db/migrations/dbversiontransition_2_0_7.h"

#include "app/settings/constants.h"
#include "db/migrations/migrationstatements.h"
#include "db/sql/databaseversion.h"
#include "db/sql/drivertexts.h"
#include "db/sql/sqltext.h"

#include <QDebug>
#include <QDir>
#include <QFileInfo>
#include <QPair>
#include <QSqlQuery>
#include <QSqlRecord>
#include <QVector>

#include <limits>

namespace {
constexpr int rowsAtOnce = 10000;

/** A table that holds absolute paths, and its column for the relative ones. */
struct PathTable
{
    QString name;
    QString pathColumn;
    QString relativeColumn;
};

using MigrationStatements::FailureLog;

bool fail(const QSqlQuery &query, const FailureLog &log)
{
    log(query.lastError(), query.lastQuery());
    return false;
}

bool addRelativeColumn(const PathTable &table, const QSqlDatabase &database, const FailureLog &log)
{
    if (database.record(table.name).contains(table.relativeColumn))
        return true;
    return MigrationStatements::run(
        database,
        {SqlText::fill(QStringLiteral("ALTER TABLE %1 ADD %2 TEXT;"), {table.name, table.relativeColumn})},
        log);
}

/** The next rows behind a row id, read whole: a table must not be walked while it is written. */
bool readPaths(QSqlQuery &select, qint64 behind, QVector<QPair<qint64, QString>> &paths)
{
    paths.clear();
    select.bindValue(0, behind);
    if (!select.exec())
        return false;
    while (select.next())
        paths.append({select.value(0).toLongLong(), select.value(1).toString()});
    select.finish();
    return true;
}

bool fillRelativePaths(const PathTable &table, const QSqlDatabase &database, const FailureLog &log)
{
    const QDir folder(QFileInfo(database.databaseName()).absolutePath());
    QSqlQuery select(database);
    select.setForwardOnly(true);
    if (!select.prepare(
            SqlText::fill(QStringLiteral("SELECT rowid, %1 FROM %2 WHERE rowid>? ORDER BY rowid LIMIT %3"),
                          {table.pathColumn, table.name, QString::number(rowsAtOnce)})))
        return fail(select, log);
    // By row and not by path, which has no index: a million rows would be searched a million times.
    QSqlQuery update(database);
    if (!update.prepare(SqlText::fill(QStringLiteral("UPDATE %1 SET %2=? WHERE rowid=?"),
                                      {table.name, table.relativeColumn})))
        return fail(update, log);
    QVector<QPair<qint64, QString>> paths;
    qint64 last = std::numeric_limits<qint64>::min();
    do {
        if (!readPaths(select, last, paths))
            return fail(select, log);
        for (const auto &path : qAsConst(paths)) {
            update.bindValue(0, DriverTexts::toBind(update, folder.relativeFilePath(path.second)));
            update.bindValue(1, path.first);
            if (!update.exec())
                return fail(update, log);
            last = path.first;
        }
    } while (paths.size() == rowsAtOnce);
    return true;
}

QVector<PathTable> pathTables(const QSqlDatabase &database)
{
    QVector<PathTable> tables;
    if (MigrationStatements::hasTable(database, QStringLiteral("file_paths"))) {
        tables.append({QStringLiteral("file_paths"), QStringLiteral("path"), QStringLiteral("rel_path")});
    }
    if (MigrationStatements::hasTable(database, QStringLiteral("fileSource"))) {
        QSqlQuery query(database);
        if (query.exec(QStringLiteral("SELECT * FROM fileSource.files"))) {
            tables.append({QStringLiteral("fileSource.files"), QStringLiteral("file_path"),
                           QStringLiteral("file_rel_path")});
        }
    }
    return tables;
}

bool updatePaths(QSqlDatabase database, const FailureLog &log)
{
    const QVector<PathTable> tables = pathTables(database);
    // One transaction: a write to the disk per path would take hours.
    if (!database.transaction()) {
        log(database.lastError(), QString());
        return false;
    }
    for (const PathTable &table : tables) {
        if (!addRelativeColumn(table, database, log) || !fillRelativePaths(table, database, log)) {
            database.rollback();
            return false;
        }
    }
    if (database.commit())
        return true;
    log(database.lastError(), QString());
    database.rollback();
    return false;
}
} // namespace

bool DBVersionTransition_2_0_7::run(const QSqlDatabase &database)
{
    qDebug() << "DataBase migrating to v 2.0.7";
    if (database.driverName() != Constants::sqliteDriver)
        return true;
    return updatePaths(database, MigrationStatements::logAs("DBVersionTranstion_2_0_7 :")) &&
           MigrationStatements::runAsOne(
               database, MigrationStatements::programStamp(DataBaseVersions::name(Version_2_0_7)),
               MigrationStatements::logAs("DBVersionTransition_2_0_7 :"));
}

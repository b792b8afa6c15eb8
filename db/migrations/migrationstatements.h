#pragma once

#include <QSqlDatabase>
#include <QSqlError>
#include <QStringList>

#include <functional>

/** What the steps of an upgrade share: running statements in turn and writing version stamps. */
namespace MigrationStatements {
/** Hears of the error of a statement and of its text. */
using FailureLog = std::function<void(const QSqlError &, const QString &)>;

/** Runs the statements up to the first that fails. */
bool run(const QSqlDatabase &database, const QStringList &statements, const FailureLog &log);

/** The same in a transaction: all of them or none. */
bool runAsOne(QSqlDatabase database, const QStringList &statements, const FailureLog &log);

/** The statements that replace the row of vorna_version. To be run as one: without a row no file opens. */
QStringList programStamp(const QString &version);

/** The statements that leave scheme_version with this one row. */
QStringList schemaStamp(const QSqlDatabase &database, const QString &version);

bool hasTable(const QSqlDatabase &database, const QString &table);

/** Logs "<name> :" and the error's text, as most steps do. */
FailureLog logAs(const char *name);
} // namespace MigrationStatements

#pragma once

#include <QSqlError>

#include <sqlite3.h>

#include <initializer_list>

/** The numbers of errors on a local database, by the names that SQLite gives them. */
namespace SqliteErrors {
/** With what an extended code tells beyond the primary one; 0 for an error of a server. */
int code(const QSqlError &error);
/** The primary code alone. */
int primaryCode(const QSqlError &error);
/** Whether its primary code is one of these. */
bool isOneOf(const QSqlError &error, std::initializer_list<int> primaryCodes);
/** Another connection is in the way. */
bool isBusy(const QSqlError &error);
} // namespace SqliteErrors

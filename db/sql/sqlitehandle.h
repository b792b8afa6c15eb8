#pragma once

class QSqlDatabase;
struct sqlite3;

/** The driver's own handle; null for a server, and when it comes from another library than is linked here. */
sqlite3 *sqliteHandle(const QSqlDatabase &database);

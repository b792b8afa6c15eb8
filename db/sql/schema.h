#pragma once

#include <QStringList>

/** The tables of a new local database. A server database is made by its own set-up script. */
namespace Schema {
/** In the head of a file, by which a desktop tells databases and shells from other SQLite files. */
constexpr int databaseApplicationId = 0x56726E61;
constexpr int shellApplicationId = 0x56726E73;

/** The statements that make an empty database, in their order, each run by itself; versions are filled in. */
QStringList creationStatements();
/** For the database of that name on its connection. */
QString applicationIdStatement(int id, const QString &databaseName = QStringLiteral("main"));

/** Replaces the row of vorna_version or scheme_version. */
QString programVersionInsert(const QString &version);
QString schemaVersionInsert(const QString &version);
} // namespace Schema

#pragma once

#include <QStringList>

/** The tables of a new local database. A server database is made by its own set-up script. */
namespace Schema {
/** The statements that make an empty database, in their order, each run by itself; versions are filled in. */
QStringList creationStatements();

/** Replaces the row of vorna_version or scheme_version. */
QString programVersionInsert(const QString &version);
QString schemaVersionInsert(const QString &version);
} // namespace Schema

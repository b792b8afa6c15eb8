#pragma once

#include <QString>

/**
 * The names that the whole program shares: versions, extensions, MIME types, connection names. Settings keys
 * stand beside the functions that read them.
 */
namespace Constants {
const QString programVersion = QStringLiteral("4.1.3");
const QString schemaVersion = QStringLiteral("4.1.0");
const QString applicationName = QStringLiteral("Vorna");
const QString organizationName = QStringLiteral("Tallowfen Software");

const QString databaseExtension = QStringLiteral(".vrn");
const QString shellExtension = QStringLiteral(".vsh");
const QString csvExtension = QStringLiteral(".csv");
const QString databaseFilter = QStringLiteral("*.vrn");
const QString shellFilter = QStringLiteral("*.vsh");

const QString nodeMimeType = QStringLiteral("vorna/nodeIDs");
const QString tagMimeType = QStringLiteral("vorna/tagIDs");
const QString fileMimeType = QStringLiteral("vorna/fileID-list");
const QString uriMimeType = QStringLiteral("text/uri-list");

const QString temporaryConnection = QStringLiteral("tempConnection");
const QString workerConnection = QStringLiteral("AsyncConnection");

const QString sqliteDriver = QStringLiteral("QSQLITE");
const QString postgresDriver = QStringLiteral("QPSQL");

/** The two kinds of database, as DBDetails and the collections carry them. */
constexpr int localDatabase = 1;
constexpr int serverDatabase = 2;
} // namespace Constants

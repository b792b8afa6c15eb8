#pragma once

#include <QHash>
#include <QString>
#include <QStringList>

class FileOperationWorker;

/** Which paths the database has already. Worker's thread. */
namespace StoredPaths {
/**
 * Fills in the ids of the external files that have one of these paths, absolute or as seen from the database.
 * One walk through the table for each folder. False when a statement failed.
 */
bool read(FileOperationWorker &worker, const QStringList &paths, QHash<QString, qint64> &idsByPath);
} // namespace StoredPaths

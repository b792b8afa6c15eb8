#include "fileops/tracking/missingplaces.h"

#include "core/records/filekind.h"
#include "db/sql/abstractqueryconstructor.h"
#include "db/sql/sqltext.h"
#include "db/sql/transaction.h"
#include "fileops/contents/externalpaths.h"
#include "fileops/looks/filelooks.h"
#include "fileops/worker/fileoperationworker.h"

#include <QDir>

#include <algorithm>

namespace {
QString nameOf(const DuplicateFileInfo &file)
{
    return file.path.mid(file.path.lastIndexOf(QLatin1Char('/')) + 1);
}

/** Moving keeps the time of the last change, or the name. */
bool isRecognised(const DuplicateFileInfo &missing, const DuplicateFileInfo &added)
{
    const qint64 later = added.lastModified.toSecsSinceEpoch() - missing.lastModified.toSecsSinceEpoch();
    return nameOf(missing) == nameOf(added) || later == 0 || later == 1;
}
} // namespace

QVector<qint64> MissingPlaces::fill(QVector<DuplicateMatch> &contentMatches)
{
    QVector<qint64> filled;
    if (!readCrowdedSizes(contentMatches))
        return filled;
    for (DuplicateMatch &match : contentMatches) {
        if (m_worker.shouldEnd() || m_worker.isSavepointLost())
            break;
        qint64 fileId = 0;
        if (fillOne(match, fileId))
            filled.append(fileId);
    }
    return filled;
}

bool MissingPlaces::readCrowdedSizes(const QVector<DuplicateMatch> &contentMatches)
{
    QSet<qint64> sizes;
    for (const DuplicateMatch &match : contentMatches) {
        for (const DuplicateFileInfo &file : match.databaseFiles) {
            if (!isRecognised(file, match.addedFiles.first()) && file.size > 0)
                sizes.insert(file.size);
        }
    }
    if (sizes.isEmpty())
        return true;
    // One walk, as no index knows sizes.
    const AbstractQueryConstructor &sql = *m_worker.constructor();
    TableData rows;
    const bool isRead = m_worker.runAsync(
        QStringLiteral("SELECT file_size FROM files WHERE ") +
            sql.inClause(QStringLiteral("file_size"), SqlText::idTexts(sizes.values().toVector())) +
            QStringLiteral(" GROUP BY file_size HAVING count(*)>1") + sql.statementEnd(),
        rows);
    for (const TableRowData *row : qAsConst(rows))
        m_crowdedSizes.insert(row->at(0).toLongLong());
    freeRows(rows);
    return isRead;
}

bool MissingPlaces::isCertain(const DuplicateFileInfo &missing, const DuplicateFileInfo &added) const
{
    return isRecognised(missing, added) || !m_crowdedSizes.contains(missing.size);
}

bool MissingPlaces::fillOne(DuplicateMatch &match, qint64 &fileId)
{
    const DuplicateFileInfo &added = match.addedFiles.first();
    // All empty files are equal, and hyperlinks have no place.
    if (!added.isFile() || added.size == 0)
        return false;
    const auto missing = std::find_if(
        match.databaseFiles.begin(), match.databaseFiles.end(),
        [&](const DuplicateFileInfo &file) { return isCertain(file, added) && isMissing(file); });
    const bool isKnown =
        std::any_of(match.databaseFiles.cbegin(), match.databaseFiles.cend(),
                    [&added](const DuplicateFileInfo &file) { return file.path == added.path; });
    if (missing == match.databaseFiles.end() || isKnown || !moveRecord(missing->fileId, added))
        return false;
    fileId = missing->fileId;
    match.fillsMissingPlace = true;
    return true;
}

bool MissingPlaces::isMissing(const DuplicateFileInfo &file)
{
    // What is inside the database has a name there, and no path.
    if (!QDir::isAbsolutePath(file.path) || !isAbsent(file.path))
        return false;
    int internal = 0;
    qint64 size = 0;
    qint64 storageId = 0;
    QHash<qint64, QString> relativePaths;
    if (!m_worker.readFileStorageInfo(file.fileId, internal, size, storageId) ||
        internal != FileKind::external || !m_worker.readRelativePaths({file.fileId}, relativePaths))
        return false;
    const Database::PathLocator locator = Database::pathLocator(m_worker.connectionName());
    const QString relative = relativePaths.value(file.fileId);
    return !locator.isLocal || relative.isEmpty() ||
           isAbsent(QDir::cleanPath(Database::absolutePath(relative, locator)));
}

bool MissingPlaces::isAbsent(const QString &path) const
{
    return FileLooks::at(path, [this] { return m_worker.shouldEnd(); }).isAbsent();
}

bool MissingPlaces::moveRecord(qint64 fileId, const DuplicateFileInfo &added)
{
    static const QString movePath = QStringLiteral("UPDATE file_paths SET path=?,rel_path=? WHERE "
                                                   "path_id=(SELECT storage_id FROM files WHERE file_id=?);");
    static const QString rename =
        QStringLiteral("UPDATE files SET file_name=?,modification_date=? WHERE file_id=?;");
    const QString relative =
        Database::relativePath(added.path, Database::pathLocator(m_worker.connectionName()));
    const QString name = added.path.mid(added.path.lastIndexOf(QLatin1Char('/')) + 1);
    Savepoint savepoint(m_worker);
    return savepoint.isActive() && m_worker.runFast(movePath, {added.path, relative, fileId}) &&
           m_worker.runFast(rename, {name, added.lastModified.toSecsSinceEpoch(), fileId}) &&
           savepoint.release();
}

#include "fileops/tracking/filemodificationchecker.h"

#include "core/records/filekind.h"
#include "fileops/contents/externalpaths.h"
#include "fileops/files/filelook.h"
#include "fileops/worker/fileoperationworker.h"

#include <QDir>

QHash<qint64, QString> FileModificationChecker::check(const QVector<qint64> &ids, FileOperationWorker &worker)
{
    m_present.clear();
    m_absent.clear();
    m_modified.clear();
    QVector<ExternalFileDetails> details;
    if (!worker.readExternalFileDetails(ids, details))
        return {};
    QVector<ExternalFileDetails> absent;
    for (const ExternalFileDetails &file : qAsConst(details)) {
        if (worker.shouldEnd())
            break;
        if (file.internal == FileKind::external && !file.path.isEmpty() && !look(file, file.path))
            absent.append(file);
    }
    if (!absent.isEmpty())
        lookNearby(worker, absent);
    if (!m_absent.isEmpty())
        emit noLongerPresent(m_absent);
    if (!m_present.isEmpty())
        emit present(m_present);
    return m_modified;
}

bool FileModificationChecker::look(const ExternalFileDetails &details, const QString &path)
{
    const FileLook found = FileLook::at(path);
    if (!found.isThere)
        return false;
    m_present.append(details.fileId);
    // Some disks keep a time to two seconds, so both the stored second and the one after it count as the
    // same.
    const bool isSameTime =
        found.modified == details.lastModified || found.modified == details.lastModified - 1;
    if (!isSameTime || found.size != details.size)
        m_modified.insert(details.fileId, path);
    return true;
}

void FileModificationChecker::lookNearby(FileOperationWorker &worker,
                                         const QVector<ExternalFileDetails> &absent)
{
    const Database::PathLocator locator = Database::pathLocator(worker.connectionName());
    QVector<qint64> ids;
    for (const ExternalFileDetails &file : absent)
        ids.append(file.fileId);
    QHash<qint64, QString> relativePaths;
    if (locator.isLocal && !worker.readRelativePaths(ids, relativePaths))
        return;
    for (const ExternalFileDetails &file : absent) {
        const QString relative = relativePaths.value(file.fileId);
        if (worker.shouldEnd())
            return;
        if (relative.isEmpty() || !look(file, QDir::cleanPath(Database::absolutePath(relative, locator))))
            m_absent.append(file.fileId);
    }
}

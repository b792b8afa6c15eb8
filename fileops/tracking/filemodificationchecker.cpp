#include "fileops/tracking/filemodificationchecker.h"

#include "core/records/filekind.h"
#include "db/sql/plainrows.h"
#include "fileops/contents/externalpaths.h"
#include "fileops/files/filelook.h"
#include "fileops/worker/fileoperationworker.h"

#include <QDir>
#include <QSqlDatabase>

namespace {
// A range of ids that holds more others than this is read id by id.
constexpr qint64 mostIdsPerWanted = 4;
// How many files are looked at between two questions whether to end.
constexpr int filesPerQuestion = 16;

/** Some disks keep a time to two seconds, so both the stored second and the one after it count as the same.
 */
bool isChanged(const FileLook &found, qint64 storedTime, qint64 size)
{
    const bool isSameTime = found.modified == storedTime || found.modified == storedTime + 1;
    return !isSameTime || found.size != size;
}
} // namespace

FileModificationChecker::FileModificationChecker(QObject *parent) : QObject(parent) {}

FileModificationChecker::~FileModificationChecker() = default;

QHash<qint64, QString> FileModificationChecker::check(const QVector<qint64> &ids, FileOperationWorker &worker)
{
    forget();
    if (!lookQuickly(ids, worker)) {
        forget();
        if (!lookOrdinarily(ids, worker))
            return {};
    }
    if (!m_astray.isEmpty())
        lookNearby(worker);
    if (!m_absent.isEmpty())
        emit noLongerPresent(m_absent);
    if (!m_present.isEmpty())
        emit present(m_present);
    return m_modified;
}

void FileModificationChecker::forget()
{
    m_present.clear();
    m_astray.clear();
    m_absent.clear();
    m_modified.clear();
}

bool FileModificationChecker::lookQuickly(const QVector<qint64> &ids, FileOperationWorker &worker)
{
    if (!m_rows)
        m_rows = std::make_unique<PlainRows>(QSqlDatabase::database(worker.connectionName(), false),
                                             "SELECT file_id, modification_date, file_size, path FROM files, "
                                             "file_paths WHERE path_id=storage_id "
                                             "AND internal=0 AND file_id BETWEEN ? AND ? ORDER BY file_id;");
    if (!m_rows->isValid() || !FileLook::takesUtf8())
        return false;
    const bool isRange = !ids.isEmpty() && ids.last() - ids.first() < mostIdsPerWanted * ids.size();
    int asked = 0;
    const auto mayGoOn = [&] { return ++asked % filesPerQuestion != 0 || !worker.shouldEnd(); };
    for (auto id = ids.cbegin(); id != ids.cend() && mayGoOn();) {
        m_rows->start(*id, isRange ? ids.last() : *id);
        while (mayGoOn() && m_rows->next()) {
            while (id != ids.cend() && *id < m_rows->number(0))
                ++id;
            if (id != ids.cend() && *id == m_rows->number(0) && !lookAtRow(*m_rows))
                m_astray.append(
                    {*id, FileKind::external, QString(), m_rows->number(1) + 1, m_rows->number(2)});
        }
        if (!m_rows->finish())
            return false;
        id = isRange ? ids.cend() : id + 1;
    }
    return true;
}

bool FileModificationChecker::lookAtRow(const PlainRows &row)
{
    const char *path = row.text(3);
    if (path[0] == '\0')
        return true;
    const FileLook found = FileLook::at(path);
    if (!found.isThere)
        return false;
    m_present.append(row.number(0));
    if (isChanged(found, row.number(1), row.number(2)))
        m_modified.insert(row.number(0), QString::fromUtf8(path));
    return true;
}

bool FileModificationChecker::lookOrdinarily(const QVector<qint64> &ids, FileOperationWorker &worker)
{
    QVector<ExternalFileDetails> details;
    if (!worker.readExternalFileDetails(ids, details))
        return false;
    for (const ExternalFileDetails &file : qAsConst(details)) {
        if (worker.shouldEnd())
            break;
        if (file.internal == FileKind::external && !file.path.isEmpty() && !look(file, file.path))
            m_astray.append(file);
    }
    return true;
}

bool FileModificationChecker::look(const ExternalFileDetails &details, const QString &path)
{
    const FileLook found = FileLook::at(path);
    if (!found.isThere)
        return false;
    m_present.append(details.fileId);
    if (isChanged(found, details.lastModified - 1, details.size))
        m_modified.insert(details.fileId, path);
    return true;
}

void FileModificationChecker::lookNearby(FileOperationWorker &worker)
{
    const Database::PathLocator locator = Database::pathLocator(worker.connectionName());
    QVector<qint64> ids;
    for (const ExternalFileDetails &file : qAsConst(m_astray))
        ids.append(file.fileId);
    QHash<qint64, QString> relativePaths;
    if (locator.isLocal && !worker.readRelativePaths(ids, relativePaths))
        return;
    for (const ExternalFileDetails &file : qAsConst(m_astray)) {
        const QString relative = relativePaths.value(file.fileId);
        if (worker.shouldEnd())
            return;
        if (relative.isEmpty() || !look(file, QDir::cleanPath(Database::absolutePath(relative, locator))))
            m_absent.append(file.fileId);
    }
}

#include "fileops/tracking/filemodificationchecker.h"

#include "core/records/filekind.h"
#include "db/sql/plainrows.h"
#include "fileops/contents/externalpaths.h"
#include "fileops/files/filelook.h"
#include "fileops/looks/filelooks.h"
#include "fileops/worker/fileoperationworker.h"

#include <QDir>
#include <QFile>
#include <QSqlDatabase>

namespace {
// A range of ids that holds more others than this is read id by id.
constexpr qint64 mostIdsPerWanted = 4;
// How many rows are read between two questions whether to end.
constexpr int rowsPerQuestion = 16;

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
    lookAtPlaces(worker);
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
    m_places.clear();
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
    const auto mayGoOn = [&] { return ++asked % rowsPerQuestion != 0 || !worker.shouldEnd(); };
    for (auto id = ids.cbegin(); id != ids.cend() && mayGoOn();) {
        m_rows->start(*id, isRange ? ids.last() : *id);
        while (mayGoOn() && m_rows->next()) {
            while (id != ids.cend() && *id < m_rows->number(0))
                ++id;
            const char *path = m_rows->text(3);
            if (id != ids.cend() && *id == m_rows->number(0) && path[0] != '\0')
                m_places.append({*id, m_rows->number(1), m_rows->number(2), path});
        }
        if (!m_rows->finish())
            return false;
        id = isRange ? ids.cend() : id + 1;
    }
    return true;
}

bool FileModificationChecker::lookOrdinarily(const QVector<qint64> &ids, FileOperationWorker &worker)
{
    QVector<ExternalFileDetails> details;
    if (!worker.readExternalFileDetails(ids, details))
        return false;
    for (const ExternalFileDetails &file : qAsConst(details)) {
        if (file.internal == FileKind::external && !file.path.isEmpty())
            m_places.append({file.fileId, file.lastModified - 1, file.size, QFile::encodeName(file.path)});
    }
    return true;
}

void FileModificationChecker::lookAtPlaces(FileOperationWorker &worker)
{
    QVector<QByteArray> paths;
    paths.reserve(m_places.size());
    for (const Place &place : qAsConst(m_places))
        paths.append(place.path);
    const QVector<AnsweredLook> looks = FileLooks::at(paths, [&worker] { return worker.shouldEnd(); });
    for (int i = 0; i < looks.size(); ++i) {
        if (looks.at(i).isAnswered && !looks.at(i).look.isThere)
            m_astray.append(m_places.at(i));
        else if (looks.at(i).isAnswered)
            take(m_places.at(i), looks.at(i).look);
    }
}

void FileModificationChecker::take(const Place &place, const FileLook &found)
{
    m_present.append(place.fileId);
    if (isChanged(found, place.storedTime, place.size))
        m_modified.insert(place.fileId, QFile::decodeName(place.path));
}

void FileModificationChecker::lookNearby(FileOperationWorker &worker)
{
    const Database::PathLocator locator = Database::pathLocator(worker.connectionName());
    QVector<qint64> ids;
    for (const Place &place : qAsConst(m_astray))
        ids.append(place.fileId);
    QHash<qint64, QString> relativePaths;
    if (locator.isLocal && !worker.readRelativePaths(ids, relativePaths))
        return;
    QVector<Place> nearby;
    QVector<QByteArray> paths;
    for (Place place : qAsConst(m_astray)) {
        const QString relative = relativePaths.value(place.fileId);
        const QByteArray path =
            relative.isEmpty()
                ? place.path
                : QFile::encodeName(QDir::cleanPath(Database::absolutePath(relative, locator)));
        if (path == place.path) {
            m_absent.append(place.fileId);
            continue;
        }
        place.path = path;
        nearby.append(place);
        paths.append(path);
    }
    const QVector<AnsweredLook> looks = FileLooks::at(paths, [&worker] { return worker.shouldEnd(); });
    for (int i = 0; i < looks.size(); ++i) {
        if (looks.at(i).look.isThere)
            take(nearby.at(i), looks.at(i).look);
        else if (looks.at(i).isAnswered)
            m_absent.append(nearby.at(i).fileId);
    }
}

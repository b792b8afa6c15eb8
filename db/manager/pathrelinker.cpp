#include "db/manager/pathrelinker.h"

#include "core/records/file.h"
#include "core/records/filekind.h"
#include "fileops/contents/externalpaths.h"
#include "fileops/files/filelook.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFileInfo>
#include <memory>
#include <utility>

namespace {
constexpr int sliceMilliseconds = 5;
constexpr int mostPlaces = 2000;
// What the transaction and the reload of a slice take stays below what anybody notices.
constexpr int mostChanges = 500;
constexpr int retryMilliseconds = 500;
constexpr int mostDoublings = 7;
constexpr int patienceMilliseconds = 80;

const QString pathColumn = QStringLiteral("path");
const QString relPathColumn = QStringLiteral("rel_path");

QString pathFromFolder(const QString &relPath, const QString &folder)
{
    const QString joined = folder + QLatin1Char('/') + relPath;
    return relPath.contains(QLatin1String("..")) || QDir::isAbsolutePath(relPath)
               ? QFileInfo(QDir::cleanPath(QDir::isAbsolutePath(relPath) ? relPath : joined))
                     .absoluteFilePath()
               : joined;
}
} // namespace

PathRelinker::PathRelinker(PathRelinkerHost &host, QObject *parent) : QObject(parent), m_host(host)
{
    m_timer.setSingleShot(true);
    connect(&m_timer, &QTimer::timeout, this, &PathRelinker::goOn);
}

void PathRelinker::start(const QString &databasePath, const QVector<qint64> &fileIds)
{
    stop();
    m_databasePath = databasePath;
    m_fileIds = fileIds;
    if (!m_fileIds.isEmpty())
        m_timer.start(0);
}

void PathRelinker::stop()
{
    m_looks.forget();
    m_isLooking = false;
    m_timer.stop();
    m_fileIds.clear();
    m_mendings.clear();
    m_next = 0;
    m_refusals = 0;
}

bool PathRelinker::relinkNow(const QString &databasePath, qint64 fileId)
{
    const File *file = m_host.fileToRelink(fileId);
    if (!isRelinkable(file))
        return true;
    const Place place{fileId, file->path(), file->relPath()};
    const auto lookNow = [place, databasePath](const BackgroundLooks::ShouldEnd &) {
        Mendings mendings;
        const Found found = look(place, databasePath, mendings);
        return std::make_pair(found, mendings);
    };
    const auto result = std::make_shared<Found>(InPlace);
    m_looksNow.runShortly(patienceMilliseconds, lookNow,
                          [this, result](const std::pair<Found, Mendings> &found) {
                              *result = found.first;
                              mendNow(found.second);
                          });
    return *result != Nowhere;
}

void PathRelinker::mendNow(const Mendings &mendings)
{
    for (Mending mending : mendings) {
        if (!isCurrent(mending) || m_host.writePaths({mending.change}) != PathRelinkerHost::Busy)
            continue;
        // Whoever wants the file now gets it, and the database hears of it later.
        m_host.showPaths({mending.change});
        const File *file = m_host.fileToRelink(mending.place.fileId);
        mending.place = {file->id(), file->path(), file->relPath()};
        m_mendings.append(mending);
        if (!isRunning())
            m_timer.start(retryMilliseconds);
    }
}

bool PathRelinker::isRelinkable(const File *file)
{
    return file && file->internal() == FileKind::external && !file->path().isEmpty() &&
           !file->relPath().isEmpty();
}

bool PathRelinker::isCurrent(const Mending &mending) const
{
    const File *file = m_host.fileToRelink(mending.place.fileId);
    return file && file->path() == mending.place.path && file->relPath() == mending.place.relPath;
}

PathRelinker::Found PathRelinker::look(const Place &place, const QString &databasePath, Mendings &mendings)
{
    const QString other = pathFromFolder(place.relPath, QFileInfo(databasePath).absolutePath());
    const bool isAtPath = FileLook::at(place.path).isThere;
    // Mostly both are one, and one look tells of both.
    const bool isAtOther = other == place.path ? isAtPath : FileLook::at(other).isThere;
    if (isAtPath == isAtOther)
        return isAtPath ? InPlace : Nowhere;
    if (isAtOther)
        mendings.append({place, {place.fileId, pathColumn, other}});
    else
        mendings.append(
            {place, {place.fileId, relPathColumn, Database::relativePath(place.path, {true, databasePath})}});
    return Mended;
}

void PathRelinker::goOn()
{
    const bool isMore = m_next < m_fileIds.size();
    if (m_mendings.size() >= mostChanges || (!isMore && !m_mendings.isEmpty()))
        writeSlice();
    else if (isMore)
        gatherSlice();
}

void PathRelinker::gatherSlice()
{
    QElapsedTimer elapsed;
    elapsed.start();
    QVector<Place> places;
    while (m_next < m_fileIds.size() && places.size() < mostPlaces &&
           !elapsed.hasExpired(sliceMilliseconds)) {
        const File *file = m_host.fileToRelink(m_fileIds.at(m_next++));
        if (!file || file->internal() != FileKind::external)
            continue;
        if (isRelinkable(file))
            places.append({file->id(), file->path(), file->relPath()});
        else
            m_fileIds.resize(m_next);
    }
    m_isLooking = true;
    m_looks.run(
        [places, databasePath = m_databasePath](const BackgroundLooks::ShouldEnd &shouldEnd) {
            Mendings found;
            for (const Place &place : places) {
                if (shouldEnd())
                    break;
                look(place, databasePath, found);
            }
            return found;
        },
        [this](const Mendings &found) { takeSlice(found); });
}

void PathRelinker::takeSlice(const Mendings &found)
{
    m_isLooking = false;
    m_mendings += found;
    if (!m_mendings.isEmpty() || m_next < m_fileIds.size())
        m_timer.start(0);
}

void PathRelinker::writeSlice()
{
    const Mendings slice = m_mendings.mid(0, mostChanges);
    PathChanges changes;
    for (const Mending &mending : slice) {
        // While somebody else had the database, the id may have become another file's.
        if (isCurrent(mending))
            changes.append(mending.change);
    }
    switch (changes.isEmpty() ? PathRelinkerHost::Written : m_host.writePaths(changes)) {
    case PathRelinkerHost::Written:
        m_refusals = 0;
        m_mendings.remove(0, slice.size());
        m_timer.start(0);
        break;
    case PathRelinkerHost::Busy:
        m_timer.start(retryMilliseconds << qMin(m_refusals++, mostDoublings));
        break;
    default:
        stop();
    }
}

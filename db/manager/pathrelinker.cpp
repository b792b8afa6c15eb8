#include "db/manager/pathrelinker.h"

#include "core/records/file.h"
#include "core/records/filekind.h"
#include "fileops/contents/externalpaths.h"
#include "fileops/files/filelook.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFileInfo>

namespace {
constexpr int sliceMilliseconds = 5;
// What the transaction and the reload of a slice take stays below what anybody notices.
constexpr int mostChanges = 500;
constexpr int retryMilliseconds = 500;

const QString pathColumn = QStringLiteral("path");
const QString relPathColumn = QStringLiteral("rel_path");
} // namespace

PathRelinker::PathRelinker(PathRelinkerHost &host, QObject *parent) : QObject(parent), m_host(host)
{
    m_timer.setSingleShot(true);
    connect(&m_timer, &QTimer::timeout, this, &PathRelinker::runSlice);
}

void PathRelinker::start(const QString &databasePath, const QVector<qint64> &fileIds)
{
    stop();
    setDatabase(databasePath);
    m_fileIds = fileIds;
    if (!m_fileIds.isEmpty())
        m_timer.start(0);
}

void PathRelinker::stop()
{
    m_timer.stop();
    m_fileIds.clear();
    m_changes.clear();
    m_next = 0;
}

void PathRelinker::setDatabase(const QString &databasePath)
{
    m_databasePath = databasePath;
    m_folder = QFileInfo(databasePath).absolutePath();
}

bool PathRelinker::relinkNow(const QString &databasePath, qint64 fileId)
{
    const File *file = m_host.fileToRelink(fileId);
    if (!file || file->internal() != FileKind::external || file->path().isEmpty() ||
        file->relPath().isEmpty())
        return true;
    setDatabase(databasePath);
    PathChanges waiting;
    waiting.swap(m_changes);
    const Found found = look(*file);
    if (found == Mended)
        m_host.writePaths(m_changes);
    m_changes = waiting;
    return found != Nowhere;
}

QString PathRelinker::pathFromFolder(const QString &relPath) const
{
    const QString joined = m_folder + QLatin1Char('/') + relPath;
    return relPath.contains(QLatin1String("..")) || QDir::isAbsolutePath(relPath)
               ? QFileInfo(QDir::cleanPath(QDir::isAbsolutePath(relPath) ? relPath : joined))
                     .absoluteFilePath()
               : joined;
}

PathRelinker::Found PathRelinker::look(const File &file)
{
    const QString path = file.path();
    const QString other = pathFromFolder(file.relPath());
    const bool isAtPath = FileLook::at(path).isThere;
    // Mostly both are one, and one look tells of both.
    const bool isAtOther = other == path ? isAtPath : FileLook::at(other).isThere;
    if (isAtPath == isAtOther)
        return isAtPath ? InPlace : Nowhere;
    if (isAtOther)
        m_changes.append({file.id(), pathColumn, other});
    else
        m_changes.append({file.id(), relPathColumn, Database::relativePath(path, {true, m_databasePath})});
    return Mended;
}

void PathRelinker::runSlice()
{
    QElapsedTimer elapsed;
    elapsed.start();
    while (m_next < m_fileIds.size() && m_changes.size() < mostChanges &&
           !elapsed.hasExpired(sliceMilliseconds)) {
        const File *file = m_host.fileToRelink(m_fileIds.at(m_next++));
        if (!file || file->internal() != FileKind::external)
            continue;
        if (file->path().isEmpty() || file->relPath().isEmpty())
            m_fileIds.resize(m_next);
        else
            look(*file);
    }
    if (m_changes.size() >= mostChanges || (m_next == m_fileIds.size() && !m_changes.isEmpty()))
        writeSlice();
    else if (m_next < m_fileIds.size())
        m_timer.start(0);
}

void PathRelinker::writeSlice()
{
    switch (m_host.writePaths(m_changes)) {
    case PathRelinkerHost::Written:
        m_changes.clear();
        if (m_next < m_fileIds.size())
            m_timer.start(0);
        break;
    case PathRelinkerHost::Busy:
        m_timer.start(retryMilliseconds);
        break;
    default:
        stop();
    }
}

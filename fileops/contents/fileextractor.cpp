#include "fileops/contents/fileextractor.h"

#include "core/records/filekind.h"
#include "fileops/contents/blockstorage.h"
#include "fileops/contents/externalpaths.h"
#include "fileops/contents/filecomparison.h"
#include "fileops/files/filenames.h"
#include "fileops/files/partfile.h"
#include "fileops/files/regularfile.h"
#include "fileops/files/temporarycopies.h"
#include "fileops/worker/fileoperationworker.h"

#include <QDebug>
#include <QDir>
#include <QFileInfo>

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <vector>

namespace {
constexpr qint64 sliceSize = 1024LL * 1024;

/** Makes a new file that nobody else may read, not even at its first moment. */
bool openPrivately(const QString &path, QFile &file)
{
    const int descriptor = ::open(QFile::encodeName(path).constData(),
                                  O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, S_IRUSR | S_IWUSR);
    // By its descriptor: another file may have its name by now.
    return descriptor >= 0 && file.open(descriptor, QIODevice::WriteOnly, QFileDevice::AutoCloseHandle);
}

void logUnopened(const QString &path)
{
    qDebug("Could not open '%s'for writing.", qPrintable(path));
}
} // namespace

FileExtractor::Outcome FileExtractor::extractToFile(qint64 fileId, const QString &target, Existing existing)
{
    m_source = target.mid(target.lastIndexOf(QLatin1Char('/')) + 1);
    m_target = target;
    m_reason.clear();
    m_isCutShort = false;
    m_worker->forgetLastError();
    int kind = 0;
    if (!m_worker->readInternal(fileId, kind))
        return whyNothingWasRead();
    if (existing == Compare && kind != FileKind::hyperlink && Database::isTaken(target)) {
        if (hasContents(target, fileId, kind))
            return Extracted;
        return m_worker->shouldEnd() ? Failed : extractToFile(fileId, freePath(target), Keep);
    }
    if (kind == FileKind::external)
        return extractExternal(fileId, target, existing);
    return kind == FileKind::internal ? extractInternal(fileId, target, existing) : Extracted;
}

bool FileExtractor::hasContents(const QString &path, qint64 fileId, int kind)
{
    FileComparison comparison(*m_worker);
    if (kind == FileKind::external) {
        QString source;
        return m_worker->readPath(fileId, source) &&
               comparison.compareFiles(source, path) == FileComparison::Same;
    }
    qint64 size = 0;
    qint64 storageId = 0;
    return m_worker->readFileStorageInfo(fileId, kind, size, storageId) &&
           comparison.compareWithBlocks(path, storageId, size) == FileComparison::Same;
}

QString FileExtractor::freePath(const QString &target) const
{
    const int nameAt = target.lastIndexOf(QLatin1Char('/')) + 1;
    const QString folder = target.left(nameAt);
    int number = 1;
    return Database::pathIn(folder, Database::uniqueFileName(
                                        Database::numberableFileName(target.mid(nameAt)),
                                        [&](const QString &name) {
                                            const QString path = Database::pathIn(folder, name);
                                            return m_reserved.contains(path) || Database::isTaken(path);
                                        },
                                        number));
}

QString FileExtractor::extractToTemporary(qint64 fileId)
{
    QString name;
    if (!m_worker->readFileName(fileId, name))
        return QString();
    name = Database::safeFileName(name);
    const QString folder = QDir::tempPath();
    QString path = Database::pathIn(folder, name);
    QFile file;
    int cuts = 0;
    while (!openPrivately(path, file)) {
        if (!Database::isTaken(path)) {
            logUnopened(path);
            return QString();
        }
        name.prepend(QLatin1String("t_"));
        // What is left of a name cut before leads to the same names again, all of them taken.
        if (QFile::encodeName(name).size() > Database::mostNameBytes)
            name = QString::number(++cuts) + QLatin1Char('_') +
                   Database::fittingFileName(name, Database::mostNameBytes);
        path = Database::pathIn(folder, name);
    }
    qDebug("FileExtractor: extracting to temporary file, %s", qPrintable(path));
    TemporaryCopies::noteBegun(path);
    const bool isWritten = writeInternal(fileId, file) == Extracted;
    file.close();
    if (!isWritten) {
        QFile::remove(path);
        return QString();
    }
    TemporaryCopies::noteWritten(path);
    return path;
}

FileExtractor::Outcome FileExtractor::extractExternal(qint64 fileId, const QString &target, Existing existing)
{
    QString path;
    if (!m_worker->readPath(fileId, path))
        return whyNothingWasRead();
    m_source = path;
    // Replacing would have it read from the place that it is written to.
    if (RegularFile::isSame(path, target))
        return Extracted;
    RegularFile source;
    if (!source.open(path)) {
        qDebug() << "FileExtractor: cannot read" << path;
        return LeftOut;
    }
    const QFileDevice::Permissions permissions = QFileInfo(path).permissions();
    constexpr bool keepsPart = false;
    return write(target, existing, keepsPart, [this, &source, permissions](QFile &file) {
        const Outcome outcome = copyFrom(source, file);
        if (outcome == Extracted)
            file.setPermissions(permissions);
        return outcome;
    });
}

FileExtractor::Outcome FileExtractor::extractInternal(qint64 fileId, const QString &target, Existing existing)
{
    constexpr bool keepsPart = true;
    return write(target, existing, keepsPart,
                 [this, fileId](QFile &file) { return writeInternal(fileId, file); });
}

FileExtractor::Outcome FileExtractor::writeInternal(qint64 fileId, QFile &target)
{
    switch (BlockStorage(*m_worker).readInto(fileId, target,
                                             [this](qint64 done, qint64 total) { report(done, total); })) {
    case BlockStorage::Written:
        return Extracted;
    case BlockStorage::Unreadable:
        return LeftOut;
    default:
        return Failed;
    }
}

FileExtractor::Outcome FileExtractor::copyFrom(RegularFile &source, QFile &target)
{
    std::vector<char> slice(sliceSize);
    qint64 done = 0;
    for (qint64 count = sliceSize; count == sliceSize;) {
        if (m_worker->shouldEnd())
            return Failed;
        count = source.read(slice.data(), sliceSize);
        if (count < 0)
            return LeftOut;
        if (!BlockStorage::writeAll(target, slice.data(), count))
            return Failed;
        done += count;
        report(done, source.size());
    }
    return target.flush() ? Extracted : Failed;
}

FileExtractor::Outcome FileExtractor::write(const QString &target, Existing existing, bool keepsPart,
                                            const Fill &fill)
{
    if (isOfTheDatabase(target)) {
        qDebug() << "FileExtractor: the open database keeps its files" << target;
        return LeftOut;
    }
    const bool isThere = Database::isTaken(target);
    // Nobody was asked about a file that came since the folder was looked at; a folder gives way to no file.
    const QFileInfo there(target);
    if (isThere && (existing != Replace || (there.isDir() && !there.isSymLink()))) {
        logUnopened(target);
        return LeftOut;
    }
    cleanUp(there.path());
    PartFile part(target);
    errno = 0;
    if (!part.open(isThere)) {
        noteReason(part.device());
        logUnopened(target);
        return Failed;
    }
    errno = 0;
    const Outcome outcome = fill(part.device());
    if (outcome == Failed && part.device().error() != QFileDevice::NoError)
        noteReason(part.device());
    if (outcome != Extracted && (isThere || !keepsPart))
        return outcome;
    errno = 0;
    const PartFile::Outcome named = isThere ? part.replace() : part.giveName();
    m_isCutShort = named == PartFile::Named && outcome != Extracted;
    if (named == PartFile::Named || outcome != Extracted)
        return outcome;
    logUnopened(target);
    if (named == PartFile::Refused)
        return LeftOut;
    noteReason(part.device());
    return Failed;
}

void FileExtractor::noteReason(const QFile &file)
{
    const int code = errno;
    if (file.error() != QFileDevice::NoError)
        m_reason = file.errorString();
    else if (code != 0)
        m_reason = qt_error_string(code);
}

FileExtractor::Outcome FileExtractor::whyNothingWasRead() const
{
    return m_worker->isConnectionLost() || m_worker->lastError().isValid() ? Failed : LeftOut;
}

void FileExtractor::cleanUp(const QString &folder)
{
    if (m_cleanFolders.contains(folder))
        return;
    m_cleanFolders.insert(folder);
    PartFile::removeLeftovers(folder);
}

/** Under such a name SQLite would take a foreign file for the rest of a broken transaction. */
bool FileExtractor::isOfTheDatabase(const QString &target) const
{
    const Database::PathLocator locator = Database::pathLocator(m_worker->connectionName());
    if (!locator.isLocal)
        return false;
    const QFileInfo database(QFileInfo(locator.databasePath).canonicalFilePath());
    const QFileInfo info(target);
    if (!info.fileName().startsWith(database.fileName()) ||
        QFileInfo(info.path()).canonicalFilePath() != database.path())
        return false;
    const QString ending = info.fileName().mid(database.fileName().size());
    return ending.isEmpty() || ending == QLatin1String("-journal") || ending == QLatin1String("-wal") ||
           ending == QLatin1String("-shm");
}

void FileExtractor::report(qint64 done, qint64 total)
{
    if (total > 0)
        emit progress(float(double(qMin(done, total)) / double(total)));
}

#include "fileops/fileextractor.h"

#include "core/filekind.h"
#include "fileops/blockstorage.h"
#include "fileops/databasefunctions.h"
#include "fileops/fileoperationworker.h"
#include "fileops/regularfile.h"

#include <QDebug>
#include <QDir>
#include <QFileInfo>

#include <cstdio>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

namespace {
constexpr qint64 sliceSize = 1024LL * 1024;

/** Makes a new file that nobody else may read, not even at its first moment. */
bool openPrivately(QFile &file)
{
    const int descriptor = ::open(QFile::encodeName(file.fileName()).constData(),
                                  O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, S_IRUSR | S_IWUSR);
    if (descriptor < 0)
        return false;
    ::close(descriptor);
    // Opened by its name: by its descriptor it would not know that.
    return file.open(QIODevice::WriteOnly | QIODevice::ExistingOnly);
}

/**
 * A new file to be renamed when it is whole: whoever looks at the folder meanwhile sees no half of it. One
 * that takes another's place is readable by nobody who cannot read that one.
 */
bool openBeside(const QString &target, bool isReplacing, QFile &file)
{
    const QString folder = QFileInfo(target).path() + QLatin1Char('/');
    int number = 0;
    do {
        file.setFileName(folder + QStringLiteral(".vorna-%1.part").arg(++number));
    } while (Database::isTaken(file.fileName()));
    if (!isReplacing)
        return file.open(QIODevice::WriteOnly | QIODevice::NewOnly);
    const QFileDevice::Permissions permissions = QFileInfo(target).permissions();
    if (!openPrivately(file))
        return false;
    if (permissions) // a link that leads nowhere has none
        file.setPermissions(permissions);
    return true;
}

void logUnopened(const QString &path)
{
    qDebug("Could not open '%s'for writing.", qPrintable(path));
}
} // namespace

bool FileExtractor::extractToFile(qint64 fileId, const QString &target, Existing existing)
{
    int kind = 0;
    if (!m_worker->readInternal(fileId, kind))
        return false;
    if (kind == FileKind::external)
        return extractExternal(fileId, target, existing);
    if (kind != FileKind::internal)
        return true;
    return write(target, existing, [this, fileId](QFile &file) { return writeInternal(fileId, file); });
}

QString FileExtractor::extractToTemporary(qint64 fileId)
{
    QString name;
    if (!m_worker->readFileName(fileId, name))
        return QString();
    name = Database::safeFileName(name);
    const QString folder = QDir::tempPath() + QLatin1Char('/');
    QFile file(folder + name);
    int cuts = 0;
    while (!openPrivately(file)) {
        if (!Database::isTaken(file.fileName())) {
            logUnopened(file.fileName());
            return QString();
        }
        name.prepend(QLatin1String("t_"));
        // What is left of a name cut before leads to the same names again, all of them taken.
        if (QFile::encodeName(name).size() > Database::mostNameBytes)
            name = QString::number(++cuts) + QLatin1Char('_') +
                   Database::fittingFileName(name, Database::mostNameBytes);
        file.setFileName(folder + name);
    }
    qDebug("FileExtractor: extracting to temporary file, %s", qPrintable(file.fileName()));
    const bool isWritten = writeInternal(fileId, file);
    file.close();
    if (isWritten)
        return file.fileName();
    file.remove();
    return QString();
}

bool FileExtractor::extractExternal(qint64 fileId, const QString &target, Existing existing)
{
    QString path;
    if (!m_worker->readPath(fileId, path))
        return false;
    // Replacing would have it read from the place that it is written to.
    if (RegularFile::isSame(path, target))
        return true;
    RegularFile source;
    if (!source.open(path)) {
        qDebug() << "FileExtractor: cannot read" << path;
        return false;
    }
    const QFileDevice::Permissions permissions = QFileInfo(path).permissions();
    return write(target, existing, [this, &source, permissions](QFile &file) {
        const bool isCopied = copyFrom(source, file);
        if (isCopied)
            file.setPermissions(permissions);
        else
            file.remove();
        return isCopied;
    });
}

bool FileExtractor::writeInternal(qint64 fileId, QFile &target)
{
    return BlockStorage(*m_worker).readInto(fileId, target,
                                            [this](qint64 done, qint64 total) { report(done, total); });
}

bool FileExtractor::copyFrom(RegularFile &source, QFile &target)
{
    std::vector<char> slice(sliceSize);
    qint64 done = 0;
    for (qint64 count = sliceSize; count == sliceSize;) {
        if (m_worker->shouldEnd())
            return false;
        count = source.read(slice.data(), sliceSize);
        if (count < 0 || target.write(slice.data(), count) != count)
            return false;
        done += count;
        report(done, source.size());
    }
    return target.flush();
}

bool FileExtractor::write(const QString &target, Existing existing, const Fill &fill)
{
    if (isOfTheDatabase(target)) {
        qDebug() << "FileExtractor: the open database keeps its files" << target;
        return false;
    }
    const bool isThere = Database::isTaken(target);
    // Nobody was asked about a file that came since the folder was looked at; a folder gives way to no file.
    const QFileInfo there(target);
    if (isThere && (existing == Keep || (there.isDir() && !there.isSymLink()))) {
        logUnopened(target);
        return false;
    }
    QFile file;
    if (!openBeside(target, isThere, file)) {
        logUnopened(target);
        return false;
    }
    const bool isWritten = fill(file);
    return isThere ? replace(target, file, isWritten) : giveName(target, file, isWritten);
}

bool FileExtractor::giveName(const QString &target, QFile &file, bool isWritten)
{
    file.close();
    // Takes nobody's place, should one have come there meanwhile.
    if (file.rename(target))
        return isWritten;
    file.remove();
    return false;
}

bool FileExtractor::replace(const QString &target, QFile &file, bool isWritten)
{
    // On the disk before the old file is gone from there.
    isWritten = isWritten && file.flush() && ::fsync(file.handle()) == 0;
    file.close();
    if (isWritten && std::rename(QFile::encodeName(file.fileName()).constData(),
                                 QFile::encodeName(target).constData()) == 0)
        return true;
    file.remove();
    return false;
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

#include "fileops/files/filemoves.h"

#include <QFile>

#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {
/** Whether the path still leads to the open file, and not to one that took its place. */
bool isStill(const QByteArray &path, int descriptor)
{
    struct stat open = {};
    struct stat named = {};
    return ::fstat(descriptor, &open) == 0 && ::lstat(path.constData(), &named) == 0 &&
           open.st_dev == named.st_dev && open.st_ino == named.st_ino;
}
} // namespace

bool FileMoves::moveOver(const QString &from, const QString &to)
{
    return std::rename(QFile::encodeName(from).constData(), QFile::encodeName(to).constData()) == 0;
}

bool FileMoves::moveUnlessTaken(const QString &from, const QString &to)
{
#ifdef RENAME_NOREPLACE
    if (::renameat2(AT_FDCWD, QFile::encodeName(from).constData(), AT_FDCWD,
                    QFile::encodeName(to).constData(), RENAME_NOREPLACE) == 0)
        return true;
    if (errno != EINVAL && errno != ENOSYS && errno != EOPNOTSUPP)
        return false;
#endif
    return linkUnlessTaken(from, to) || (errno != EEXIST && reserveUnlessTaken(from, to));
}

bool FileMoves::linkUnlessTaken(const QString &from, const QString &to)
{
    const QByteArray old = QFile::encodeName(from);
    return ::link(old.constData(), QFile::encodeName(to).constData()) == 0 && ::unlink(old.constData()) == 0;
}

bool FileMoves::reserveUnlessTaken(const QString &from, const QString &to)
{
    const QByteArray path = QFile::encodeName(to);
    const int descriptor =
        ::open(path.constData(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, S_IRUSR | S_IWUSR);
    if (descriptor < 0)
        return false;
    const bool isMoved = isStill(path, descriptor) && moveOver(from, to);
    const int reason = errno;
    if (!isMoved && isStill(path, descriptor))
        ::unlink(path.constData());
    ::close(descriptor);
    errno = reason;
    return isMoved;
}

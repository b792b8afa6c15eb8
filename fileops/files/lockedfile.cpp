#include "fileops/files/lockedfile.h"

#include "fileops/files/regularfile.h"

#include <QDirIterator>
#include <QRegularExpression>

#include <cerrno>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {
const QString prefix = QStringLiteral(".vorna-");
constexpr int mostFiles = 1000000;
constexpr mode_t ownerOnly = S_IRUSR | S_IWUSR;
constexpr mode_t everybody = ownerOnly | S_IRGRP | S_IWGRP | S_IROTH | S_IWOTH; // less the umask

bool isOwn(const struct stat &status)
{
    // A second name could be that of a file which somebody needs.
    return S_ISREG(status.st_mode) && status.st_uid == ::geteuid() && status.st_nlink == 1;
}

/** Whether the name still leads to the open file, which is this user's alone. */
bool isOwnAs(const QByteArray &name, int descriptor)
{
    struct stat named = {};
    struct stat open = {};
    return ::lstat(name.constData(), &named) == 0 && isOwn(named) && ::fstat(descriptor, &open) == 0 &&
           named.st_dev == open.st_dev && named.st_ino == open.st_ino;
}

/** False when one who cleans up came first; a disk without locks gives nobody any. */
bool lock(int descriptor)
{
    if (::flock(descriptor, LOCK_EX | LOCK_NB) != 0)
        return errno != EWOULDBLOCK;
    struct stat status = {};
    return ::fstat(descriptor, &status) != 0 || status.st_nlink > 0;
}
} // namespace

bool LockedFile::open(const QString &folder, const QString &ending, Access access)
{
    for (int number = 1; number < mostFiles; ++number) {
        m_path = folder + QLatin1Char('/') + prefix + QString::number(number) + ending;
        const QByteArray name = QFile::encodeName(m_path);
        const int descriptor = ::open(name.constData(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC,
                                      access == ForOwner ? ownerOnly : everybody);
        if (descriptor < 0 && errno == EEXIST)
            continue;
        if (descriptor < 0)
            return false;
        if (!lock(descriptor)) {
            ::close(descriptor);
            continue;
        }
        // By its descriptor: another file may have its name by now.
        return m_device.open(descriptor, QIODevice::WriteOnly, QFileDevice::AutoCloseHandle);
    }
    return false;
}

bool LockedFile::remove()
{
    // Before it is closed, and free for others with that.
    const bool isRemoved = ::unlink(QFile::encodeName(m_path).constData()) == 0;
    m_device.close();
    return isRemoved;
}

void LockedFile::removeLeftovers(const QString &folder, const QString &ending,
                                 const std::function<void(const QString &path)> &visit)
{
    const QRegularExpression ours(QRegularExpression::anchoredPattern(QRegularExpression::escape(prefix) +
                                                                      QStringLiteral("[1-9][0-9]*") +
                                                                      QRegularExpression::escape(ending)));
    QDirIterator entries(folder, {prefix + QLatin1Char('*') + ending},
                         QDir::Files | QDir::Hidden | QDir::NoSymLinks);
    while (entries.hasNext()) {
        entries.next();
        if (!ours.match(entries.fileName()).hasMatch())
            continue;
        const QString path = folder + QLatin1Char('/') + entries.fileName();
        const QByteArray name = QFile::encodeName(path);
        struct stat status = {};
        RegularFile file;
        if (::lstat(name.constData(), &status) != 0 || !isOwn(status) || !file.open(path) ||
            ::flock(file.descriptor(), LOCK_SH | LOCK_NB) != 0 || !isOwnAs(name, file.descriptor()))
            continue;
        if (visit)
            visit(path);
        ::unlink(name.constData());
    }
}

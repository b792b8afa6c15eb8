#include "fileops/files/regularfile.h"

#include <QFile>
#include <QMutex>

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {
constexpr qint64 nanoseconds = 1000000000;

FileStamp stampFrom(const struct stat &status)
{
    if (!S_ISREG(status.st_mode))
        return {};
    return {status.st_size, status.st_mtim.tv_sec * nanoseconds + status.st_mtim.tv_nsec};
}

/** The file that must not be opened, by its place on the disk, as links give it other names. */
struct ShutFile
{
    QMutex mutex;
    bool isSet = false;
    dev_t device = 0;
    ino_t node = 0;
};
ShutFile shutFile;

/** Asked before opening: once it is open, closing it does the harm. */
bool isShut(const QByteArray &path)
{
    const QMutexLocker locker(&shutFile.mutex);
    struct stat status = {};
    return shutFile.isSet && ::stat(path.constData(), &status) == 0 && status.st_dev == shutFile.device &&
           status.st_ino == shutFile.node;
}
} // namespace

RegularFile::~RegularFile()
{
    close();
}

bool RegularFile::open(const QString &path)
{
    close();
    const QByteArray name = QFile::encodeName(path);
    // Without O_NONBLOCK opening a pipe waits for a writer that may never come.
    if (!isShut(name))
        m_descriptor = ::open(name.constData(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
    if (m_descriptor < 0)
        return false;
    struct stat status = {};
    if (::fstat(m_descriptor, &status) != 0 || !S_ISREG(status.st_mode)) {
        close();
        return false;
    }
    m_stamp = stampFrom(status);
    return true;
}

qint64 RegularFile::modified() const
{
    const qint64 seconds = m_stamp.modified / nanoseconds;
    return m_stamp.modified % nanoseconds < 0 ? seconds - 1 : seconds;
}

bool RegularFile::isAsOpened() const
{
    struct stat status = {};
    return ::fstat(m_descriptor, &status) == 0 && stampFrom(status) == m_stamp;
}

bool RegularFile::isSame(const QString &path, const QString &other)
{
    struct stat one = {};
    struct stat two = {};
    return ::stat(QFile::encodeName(path).constData(), &one) == 0 &&
           ::stat(QFile::encodeName(other).constData(), &two) == 0 && one.st_dev == two.st_dev &&
           one.st_ino == two.st_ino;
}

FileStamp RegularFile::stampOf(const QString &path)
{
    struct stat status = {};
    return ::stat(QFile::encodeName(path).constData(), &status) == 0 ? stampFrom(status) : FileStamp();
}

void RegularFile::keepShut(const QString &path)
{
    struct stat status = {};
    const bool isThere = !path.isEmpty() && ::stat(QFile::encodeName(path).constData(), &status) == 0;
    const QMutexLocker locker(&shutFile.mutex);
    shutFile.isSet = isThere;
    shutFile.device = status.st_dev;
    shutFile.node = status.st_ino;
}

void RegularFile::close()
{
    if (m_descriptor >= 0)
        ::close(m_descriptor);
    m_descriptor = -1;
}

qint64 RegularFile::read(char *bytes, qint64 length)
{
    qint64 total = 0;
    while (total < length) {
        const ssize_t count = ::read(m_descriptor, bytes + total, static_cast<size_t>(length - total));
        if (count < 0 && errno == EINTR)
            continue;
        if (count < 0)
            return -1;
        if (count == 0)
            break;
        total += count;
    }
    return total;
}

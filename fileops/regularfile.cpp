#include "fileops/regularfile.h"

#include <QFile>

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
} // namespace

RegularFile::~RegularFile()
{
    close();
}

bool RegularFile::open(const QString &path)
{
    close();
    // Without O_NONBLOCK opening a pipe waits for a writer that may never come.
    m_descriptor = ::open(QFile::encodeName(path).constData(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
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

FileStamp RegularFile::stampOf(const QString &path)
{
    struct stat status = {};
    return ::stat(QFile::encodeName(path).constData(), &status) == 0 ? stampFrom(status) : FileStamp();
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

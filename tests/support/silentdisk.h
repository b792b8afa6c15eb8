#pragma once

#include <QDir>
#include <QFile>
#include <QString>

#include <fcntl.h>
#include <sys/mount.h>
#include <unistd.h>

// The system's word, which is a name of the program as well.
#undef BLOCK_SIZE

/**
 * A disk that does not answer, mounted on a new folder: a file system of which nobody serves the requests.
 * Whoever has the rights for it can have one; isThere() is false for others.
 */
class SilentDisk
{
public:
    explicit SilentDisk(const QString &folder)
        : m_folder(folder), m_device(::open("/dev/fuse", O_RDWR | O_CLOEXEC))
    {
        const QByteArray options =
            "fd=" + QByteArray::number(m_device) + ",rootmode=40000,user_id=0,group_id=0";
        m_isThere = QDir().mkpath(folder) && m_device >= 0 &&
                    ::mount("silent", QFile::encodeName(folder).constData(), "fuse", MS_NOSUID,
                            options.constData()) == 0;
    }
    ~SilentDisk()
    {
        unplug();
        ::close(m_device);
    }
    SilentDisk(const SilentDisk &) = delete;
    SilentDisk &operator=(const SilentDisk &) = delete;

    bool isThere() const { return m_isThere; }
    QString path(const QString &name) const { return m_folder + QLatin1Char('/') + name; }
    /** All that waits for it is told that it is gone. */
    void unplug()
    {
        if (m_isThere)
            ::umount2(QFile::encodeName(m_folder).constData(), MNT_FORCE | MNT_DETACH);
        m_isThere = false;
    }

private:
    const QString m_folder;
    const int m_device;
    bool m_isThere = false;
};

#include "fileops/files/folderfiles.h"

#include <QFile>

#include <dirent.h>
#include <fcntl.h>
#include <memory>
#include <sys/stat.h>

namespace {
constexpr qint64 nanoseconds = 1000000000;

qint64 inNanoseconds(const timespec &time)
{
    return time.tv_sec * nanoseconds + time.tv_nsec;
}
} // namespace

FolderFiles FolderFiles::of(const QString &folder, const std::function<bool()> &shouldEnd)
{
    FolderFiles found;
    const std::unique_ptr<DIR, int (*)(DIR *)> open(::opendir(QFile::encodeName(folder).constData()),
                                                    &::closedir);
    found.isThere = open != nullptr;
    while (const dirent *entry = open && !shouldEnd() ? ::readdir(open.get()) : nullptr) {
        struct stat status = {};
        if (entry->d_name[0] == '.' || entry->d_type == DT_DIR ||
            ::fstatat(::dirfd(open.get()), entry->d_name, &status, 0) != 0 || !S_ISREG(status.st_mode))
            continue;
        // Behind a letter of its own: at the head of a text Qt drops a byte order mark.
        const QByteArray bytes = QByteArray("/") + entry->d_name;
        const QString name = QFile::decodeName(bytes).mid(1);
        if (QFile::encodeName(name) != bytes.mid(1))
            found.unreadable.append(name);
        else
            found.files.append(
                {name, {status.st_size, inNanoseconds(status.st_mtim)}, inNanoseconds(status.st_ctim)});
    }
    return found;
}

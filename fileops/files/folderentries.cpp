#include "fileops/files/folderentries.h"

#include <QFile>

#include <dirent.h>
#include <fcntl.h>
#include <memory>
#include <sys/stat.h>

namespace {
/** Some disks tell the kind of an entry along with its name, others have to be asked. */
int kindOf(DIR *folder, const dirent &entry)
{
    if (entry.d_type != DT_UNKNOWN)
        return entry.d_type;
    struct stat status = {};
    if (::fstatat(::dirfd(folder), entry.d_name, &status, AT_SYMLINK_NOFOLLOW) != 0)
        return DT_UNKNOWN;
    return S_ISDIR(status.st_mode) ? DT_DIR : S_ISREG(status.st_mode) ? DT_REG : DT_UNKNOWN;
}
} // namespace

FolderEntries FolderEntries::of(const QString &folder)
{
    FolderEntries entries;
    const std::unique_ptr<DIR, int (*)(DIR *)> open(::opendir(QFile::encodeName(folder).constData()),
                                                    &::closedir);
    while (const dirent *entry = open ? ::readdir(open.get()) : nullptr) {
        const int kind = entry->d_name[0] == '.' ? DT_UNKNOWN : kindOf(open.get(), *entry);
        if (kind != DT_DIR && kind != DT_REG)
            continue;
        // Behind a letter of its own: at the head of a text Qt drops a byte order mark.
        const QByteArray bytes = QByteArray("/") + entry->d_name;
        const QString name = QFile::decodeName(bytes).mid(1);
        if (QFile::encodeName(name) != bytes.mid(1))
            entries.unreadable.append(name);
        else
            (kind == DT_DIR ? entries.folders : entries.files).append(name);
    }
    return entries;
}

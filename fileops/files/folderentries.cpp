#include "fileops/files/folderentries.h"

#include <QDebug>
#include <QFile>
#include <QVector>

#include <cerrno>
#include <dirent.h>
#include <fcntl.h>
#include <memory>
#include <sys/stat.h>

namespace {
constexpr int entriesBetweenSigns = 1024;

enum Kind { FileEntry, FolderEntry, OtherEntry, UnknownEntry };

Kind kindOfStatus(DIR *folder, const char *name)
{
    struct stat status = {};
    if (::fstatat(::dirfd(folder), name, &status, AT_SYMLINK_NOFOLLOW) != 0)
        return errno == ENOENT ? OtherEntry : UnknownEntry; // it may be gone by now
    return S_ISDIR(status.st_mode) ? FolderEntry : S_ISREG(status.st_mode) ? FileEntry : OtherEntry;
}

/** Some disks tell the kind of an entry along with its name, others have to be asked. */
Kind kindOf(DIR *folder, const dirent &entry)
{
    switch (entry.d_type) {
    case DT_DIR:
        return FolderEntry;
    case DT_REG:
        return FileEntry;
    case DT_UNKNOWN:
        return kindOfStatus(folder, entry.d_name);
    default:
        return OtherEntry;
    }
}

/** Hands out each file and folder of a folder; false when the system did not tell of all. */
bool list(const QByteArray &folder, FolderEntries::Hidden hidden,
          const std::function<void(Kind kind, const char *name)> &take)
{
    const std::unique_ptr<DIR, int (*)(DIR *)> open(::opendir(folder.constData()), &::closedir);
    bool isWhole = bool(open);
    while (open) {
        errno = 0; // an end is told from a failure by it alone
        const dirent *entry = ::readdir(open.get());
        if (!entry)
            return errno == 0 && isWhole;
        const bool isLeftOut = hidden == FolderEntries::WithHidden
                                   ? qstrcmp(entry->d_name, ".") == 0 || qstrcmp(entry->d_name, "..") == 0
                                   : entry->d_name[0] == '.';
        const Kind kind = isLeftOut ? OtherEntry : kindOf(open.get(), *entry);
        if (kind == UnknownEntry)
            isWhole = false;
        else if (kind != OtherEntry)
            take(kind, entry->d_name);
    }
    return isWhole;
}

/** How many files lie in and below a folder. */
qint64 countFiles(const QByteArray &folder, FolderEntries::Hidden hidden,
                  const std::function<bool()> &shouldEnd, bool &isWhole)
{
    qint64 count = 0;
    QVector<QByteArray> folders{folder};
    while (!folders.isEmpty() && !(shouldEnd && shouldEnd())) {
        const QByteArray path = folders.takeLast() + '/';
        const bool isListed = list(path, hidden, [&](Kind kind, const char *name) {
            if (kind == FolderEntry)
                folders.append(path + name);
            else
                ++count;
        });
        isWhole = isListed && isWhole;
    }
    return count;
}
} // namespace

FolderEntries FolderEntries::of(const QString &folder, const std::function<bool()> &shouldEnd, Hidden hidden)
{
    FolderEntries entries;
    QVector<QByteArray> outOfReach;
    const QByteArray path = QFile::encodeName(folder);
    int count = 0;
    entries.isWhole = list(path, hidden, [&](Kind kind, const char *entryName) {
        // A folder of a million takes its time, and this says that it goes on.
        if (shouldEnd && ++count % entriesBetweenSigns == 0)
            shouldEnd();
        // Behind a letter of its own: at the head of a text Qt drops a byte order mark.
        const QByteArray bytes = QByteArray("/") + entryName;
        const QString name = QFile::decodeName(bytes).mid(1);
        const bool isFolder = kind == FolderEntry;
        if (QFile::encodeName(name) == bytes.mid(1)) {
            (isFolder ? entries.folders : entries.files).append(name);
            return;
        }
        (isFolder ? entries.unreadableFolders : entries.unreadableFiles).append(name);
        if (isFolder)
            outOfReach.append(path + bytes);
    });
    for (const QByteArray &below : qAsConst(outOfReach))
        entries.filesOutOfReach += countFiles(below, hidden, shouldEnd, entries.isWhole);
    if (!entries.isWhole)
        qDebug() << "Not all of the folder can be read:" << folder;
    return entries;
}

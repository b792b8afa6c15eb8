#include "db/autolinks/linkpresence.h"

#include "fileops/contents/externalpaths.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <dirent.h>
#include <fcntl.h>
#include <memory>
#include <sys/stat.h>

namespace {
bool isFolder(const QString &path, struct stat &status)
{
    return ::stat(QFile::encodeName(path).constData(), &status) == 0 && S_ISDIR(status.st_mode);
}

/** A folder that is empty, or has disks in it, or is the root of one, or where systems put disks. */
bool mayHoldDisks(const QString &folder, const struct stat &status)
{
    for (const char *place : {"/media", "/mnt", "/run/media", "/net", "/Volumes"}) {
        const QString usual = QLatin1String(place);
        if (folder == usual || folder.startsWith(usual + QLatin1Char('/')))
            return true;
    }
    struct stat above = {};
    if (!isFolder(folder + QLatin1String("/.."), above) || above.st_dev != status.st_dev)
        return true;
    const std::unique_ptr<DIR, int (*)(DIR *)> open(::opendir(QFile::encodeName(folder).constData()),
                                                    &::closedir);
    bool isEmpty = true;
    while (const dirent *entry = open ? ::readdir(open.get()) : nullptr) {
        const QByteArray name = entry->d_name;
        struct stat inside = {};
        if (name == "." || name == "..")
            continue;
        isEmpty = false;
        if (::fstatat(::dirfd(open.get()), name.constData(), &inside, AT_SYMLINK_NOFOLLOW) != 0 ||
            inside.st_dev != status.st_dev)
            return true;
    }
    return isEmpty;
}
} // namespace

QString LinkPresence::folderOf(const QString &relPath, const QString &databasePath)
{
    return QDir::cleanPath(Database::absolutePath(relPath, {true, databasePath}));
}

LinkPresence LinkPresence::of(const QString &absPath, const QString &relPath, const QString &databasePath)
{
    LinkPresence found;
    struct stat status = {};
    found.isThereByDatabase = isFolder(folderOf(relPath, databasePath), status);
    found.isThere = isFolder(absPath, status);
    found.device = found.isThere ? status.st_dev : 0;
    if (found.isThere)
        return found;
    // What cannot be looked at, for want of rights or by an error of the disk, may be there.
    const bool isMissing = ::lstat(QFile::encodeName(absPath).constData(), &status) != 0 &&
                           (errno == ENOENT || errno == ENOTDIR);
    const QString around = QFileInfo(absPath).path();
    found.isGone = isMissing && isFolder(around, status);
    if (!found.isGone)
        return found;
    found.device = status.st_dev;
    found.isPlaceOfDisks = mayHoldDisks(around, status);
    return found;
}

bool LinkPresence::isRemoved(quint64 seenDevice) const
{
    return isGone && !isThereByDatabase && (seenDevice == 0 ? !isPlaceOfDisks : seenDevice == device);
}

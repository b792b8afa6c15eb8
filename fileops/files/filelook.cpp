#include "fileops/files/filelook.h"

#include <QFile>

#include <cerrno>
#include <sys/stat.h>

FileLook FileLook::at(const QString &path)
{
    return at(QFile::encodeName(path).constData());
}

FileLook FileLook::at(const char *path)
{
    // A quarter of the price of QFileInfo, and a database may have a million files.
    struct stat status = {};
    if (::stat(path, &status) != 0)
        return {false, 0, 0, errno != ENOENT && errno != ENOTDIR};
    if (!S_ISREG(status.st_mode))
        return {};
    return {true, status.st_size, status.st_mtime};
}

bool FileLook::takesUtf8()
{
    static const QString signs = QString(QChar(0xe4)) + QChar(0x2603);
    return QFile::encodeName(signs) == signs.toUtf8();
}

#pragma once

#include <QtGlobal>

class QString;

/** What one look at a path tells, without opening anything. Links are followed. Any thread. */
struct FileLook
{
    bool isThere = false; ///< there is a regular file
    qint64 size = 0;
    qint64 modified = 0; ///< whole seconds since 1970, rounded down

    static FileLook at(const QString &path);
};

#pragma once

#include <QtGlobal>

class QString;

/** What one look at a path tells, without opening anything. Links are followed. Any thread. */
struct FileLook
{
    bool isThere = false; ///< there is a regular file
    qint64 size = 0;
    qint64 modified = 0;   ///< whole seconds since 1970, rounded down
    bool isHidden = false; ///< it may be there, but may not be looked at, or its disk fails

    static FileLook at(const QString &path);
    /** The same with the bytes of the path as the system has it. */
    static FileLook at(const char *path);
    /** Whether the system has paths in UTF-8, so that those of a database need not be turned into its own. */
    static bool takesUtf8();
};

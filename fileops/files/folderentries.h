#pragma once

#include <QStringList>

/**
 * The names in a folder, without those of links, hidden entries, pipes, sockets and devices. Read from the
 * system itself, as Qt leaves out in silence what has a name that is no text.
 */
struct FolderEntries
{
    QStringList files;
    QStringList folders;
    /** Of both, those that lead nowhere in Qt; as far as they can be read, with U+FFFD for the rest. */
    QStringList unreadable;

    static FolderEntries of(const QString &folder);
};

#pragma once

#include <QStringList>

#include <functional>

/**
 * The names in a folder, without those of links, pipes, sockets and devices. Read from the
 * system itself, as Qt leaves out in silence what has a name that is no text.
 */
struct FolderEntries
{
    QStringList files;
    QStringList folders;
    /** Those that lead nowhere in Qt; as far as they can be read, with U+FFFD for the rest. */
    QStringList unreadableFiles;
    QStringList unreadableFolders;
    /** How many files lie in and below the unreadable folders. */
    qint64 filesOutOfReach = 0;
    /** False when the system did not tell of all, neither of this folder nor below the unreadable ones. */
    bool isWhole = true;

    enum Hidden { WithoutHidden, WithHidden };

    /** `shouldEnd` is asked before each folder below and ends the count. */
    static FolderEntries of(const QString &folder, const std::function<bool()> &shouldEnd = {},
                            Hidden hidden = WithoutHidden);
};

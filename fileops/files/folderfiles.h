#pragma once

#include "fileops/files/regularfile.h"

#include <QString>
#include <QStringList>
#include <QVector>

#include <functional>

/** A file of a folder, with what one look at it tells. */
struct FolderFile
{
    QString name;
    FileStamp stamp;
    qint64 changed = 0; ///< nanoseconds since 1970: when anything of it was last changed, by whatever clock
};

/**
 * The files that stand in a folder themselves, in no order, links to files included; hidden ones are left
 * out, and nothing is opened. Read from the system itself, as Qt leaves out in silence what has a name that
 * is no text. Any thread.
 */
struct FolderFiles
{
    bool isThere = false; ///< false for what is no folder, or cannot be read
    QVector<FolderFile> files;
    /** Names that lead nowhere in Qt; as far as they can be read, with U+FFFD for the rest. */
    QStringList unreadable;

    static FolderFiles of(const QString &folder, const std::function<bool()> &shouldEnd);
};

#pragma once

#include <QString>

/** What a look at a linked folder tells. Any thread. */
struct LinkPresence
{
    bool isThere = false;           ///< the absolute path is a folder
    bool isThereByDatabase = false; ///< the relative one is, from where the database lies
    quint64 device = 0;             ///< the disk of the folder, or of what is around a folder that is gone
    bool isGone = false;            ///< nothing has the path, in a folder that is there
    bool isPlaceOfDisks = false;    ///< a folder that is gone may have come with a disk

    static LinkPresence of(const QString &absPath, const QString &relPath, const QString &databasePath);
    /**
     * Whether the folder was removed, and not unplugged: what is around it is on the disk on which it was
     * seen last (0 for never) still. In doubt it was not.
     */
    bool isRemoved(quint64 seenDevice) const;
    /** The folder that a relative path leads to. */
    static QString folderOf(const QString &relPath, const QString &databasePath);
};

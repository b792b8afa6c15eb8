#pragma once

#include "core/records/recordtypes.h"
#include "fileops/files/folderfiles.h"

#include <QHash>
#include <QSet>
#include <QStringList>
#include <QVector>

/** A file of a linked folder, and what the records say about it. */
struct LinkedFile
{
    enum State {
        New,     ///< no record is known to be of it
        Suspect, ///< a record has its path or name, and its size: reading tells
        Known
    };
    FolderFile file;
    State state = New;
    qint64 recordId = 0;                   ///< the record of this path and size; 0 without one
    QHash<qint64, qint64> idsByChecksum{}; ///< of the records that a suspect is compared with
    qint64 readId = 0;                     ///< the one that has its contents, once they were read
};

/** A linked folder with its files. */
struct LinkedFolder
{
    QString linkId;
    QString path;
    QString relPath;
    QVector<LinkedFile> files;
    QStringList unreadable;
};

/**
 * Finds the records of the files of linked folders by path, relative path and name. One walk through all
 * records, however many folders there are, in steps that the window does not feel; records may come and go
 * in between. Made on any thread, used on the GUI thread.
 */
class FolderMatch
{
public:
    explicit FolderMatch(QVector<LinkedFolder> folders);

    /** Walks on for some milliseconds; true when it has come to the end. */
    bool walk(const Map<qint64, File *> &records, int milliseconds);
    QVector<LinkedFolder> takeFolders() { return std::move(m_folders); }

private:
    struct Place
    {
        int folder;
        int file;
        int next; ///< the place of another folder's file of this name; -1 for none
    };

    void compare(const File &record);
    void compare(const File &record, const LinkedFolder &folder, LinkedFile &file) const;

    QVector<LinkedFolder> m_folders;
    QVector<Place> m_places;
    QHash<QString, int> m_placeOfName;
    QSet<qint64> m_sizes; ///< of all files
    qint64 m_lastId = 0;
};

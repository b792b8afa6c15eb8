#pragma once

#include "fileops/files/regularfile.h"

#include <QStringList>
#include <QVector>

#include <functional>

/** What one reading of a file told. */
struct FileChecksum
{
    bool isRead = false; ///< false: missing, no regular file, or broken off by an error; no checksum then
    quint32 checksum = 0;
    qint64 size = 0;     ///< bytes read
    qint64 modified = 0; ///< seconds since 1970
    FileStamp stamp;     ///< on opening

    /** Whether this was read, and from a file that looked like the stamp. */
    bool isOf(const FileStamp &now) const { return isRead && stamp == now && size == now.size; }
};

/** The fingerprints of whole files. Nothing is held in memory beyond a few slices. Any thread. */
namespace FileChecksums {
/** Of one file, read in slices; `shouldEnd` is asked before each and breaks the reading off. */
FileChecksum ofFile(const QString &path, const std::function<bool()> &shouldEnd = {});

/**
 * Of each path in turn; small files are hashed several at a time, so this is the fast way for many.
 * `atFile` hears the index of each path before it is read.
 */
QVector<FileChecksum> ofFiles(const QStringList &paths, const std::function<bool()> &shouldEnd = {},
                              const std::function<void(int)> &atFile = {});
} // namespace FileChecksums

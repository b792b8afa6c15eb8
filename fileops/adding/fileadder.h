#pragma once

#include "fileops/contents/contentwriter.h"
#include "fileops/contents/externalpaths.h"
#include "fileops/contents/filechecksums.h"

#include <QString>

class FileOperationWorker;
class ThumbnailsAhead;

/**
 * Writes the rows of one new file after the other within the running transaction of the worker: contents or
 * path, thumbnail and the row in `files`. A few queries remain prepared and one block is held between files.
 */
class FileAdder
{
public:
    enum Outcome {
        Added,
        Skipped, ///< cannot be read; only of an internal file something may have been written
        Failed   ///< not added; what was written is to be rolled back
    };

    /** `kind` is a FileKind: where the contents of all files are to be. */
    FileAdder(FileOperationWorker &worker, qint32 kind, qint64 loadId, ThumbnailsAhead &thumbnails);

    /** `known` may hold what an earlier reading of the file told; it is used while the file is unchanged. */
    Outcome addFilesList(const QString &path, const FileChecksum &known, qint64 &fileId);

    /** True for texts that name something on this computer, which never become hyperlinks. */
    static bool isLocal(const QString &text);

private:
    struct NewFile;

    Outcome gather(const QString &path, const FileChecksum &known, NewFile &file);
    bool gatherExternal(const QString &path, const FileChecksum &known, NewFile &file);
    bool reserveIds(const QString &path, NewFile &file);
    Outcome storeContents(const QString &path, const FileChecksum &known, NewFile &file);
    /** An id of 0 for what is no picture; false when the database refuses the row. */
    bool addThumbnail(const QString &path, qint64 &thumbnailId);
    bool insertRows(const QString &path, const NewFile &file);

    FileOperationWorker &m_worker;
    ThumbnailsAhead &m_thumbnails;
    ContentWriter m_writer;
    const qint32 m_kind;
    qint64 m_loadId;
    Database::RelativePaths m_relativePaths;
};

#pragma once

#include "fileops/contents/blockremoval.h"
#include "fileops/worker/fileoperation.h"

#include <QHash>

#include <functional>

class FileOperationWorker;
struct StorageInfo;

/**
 * Removes files with their contents, paths, thumbnails and tags in one transaction; what lies on disk stays.
 * A file that fails, or is another one than was meant, stays in the database and the others go on: they go in
 * runs, and those of a run that fails one by one. A cancel keeps what was removed so far.
 */
class DeleteFilesOperation
{
public:
    /** Asked before a file goes, in the transaction and undone with it: where it says no, the file stays. */
    using Farewell = std::function<bool(qint64 fileId)>;

    DeleteFilesOperation(FileOperationWorker &worker, const FileOperation &request,
                         const Farewell &farewell = {});

    void run();

private:
    bool mayGoOn() const;
    QVector<qint64> removeContents();
    /** All or none of these; silent, as none is tried again one by one. */
    bool removeRun(int from, int to, QVector<qint64> &removed);
    bool removeContentsOf(const QHash<qint64, StorageInfo> &files);
    bool removeSingly(int index);
    void tellProgress(int index);
    /** Whether an external file is at one of its paths. */
    bool isInPlace(qint64 fileId);
    bool removeContentsOf(qint64 fileId, int internal, qint64 size, qint64 storageId);
    bool removeRows(const QVector<qint64> &ids);

    FileOperationWorker &m_worker;
    const FileOperation &m_request;
    const Farewell m_farewell;
    BlockRemoval m_blocks;
    int m_shownPercent = -1;
};

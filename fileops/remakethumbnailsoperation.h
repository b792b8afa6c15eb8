#pragma once

#include "fileops/fileoperation.h"

#include <QByteArray>
#include <QPair>
#include <QVector>

class FileOperationWorker;

/**
 * Makes the thumbnails of external files anew out of the files as they are now; without ids those of all
 * external files. What can no longer be read keeps the thumbnail that it has, and a file that never had one
 * gets none. Pictures are made outside of any transaction and written some at a time, so that neither other
 * writers wait long nor each row for the disk. A stopped run keeps what was written.
 */
class RemakeThumbnailsOperation
{
public:
    RemakeThumbnailsOperation(FileOperationWorker &worker, const FileOperation &request);

    void run();

private:
    QVector<qint64> fileIds();
    void remakeThumbnail(qint64 fileId);
    void remakeThumbnailExternalFile(qint64 fileId);
    bool store();

    FileOperationWorker &m_worker;
    const FileOperation &m_request;
    // Thumbnail id and picture, made but not written.
    QVector<QPair<qint64, QByteArray>> m_made;
};

#pragma once

#include "fileops/worker/fileoperation.h"
#include "fileops/worker/progressthrottle.h"

#include <QByteArray>
#include <QPair>
#include <QStringList>
#include <QVector>

class FileOperationWorker;

/**
 * Makes the thumbnails of external files anew out of the files as they are now; without ids those of all
 * external files. What can no longer be read keeps the thumbnail that it has and is named at the end; a file
 * that never had one gets none. Pictures are made outside of any transaction and written some at a time, so
 * that neither other writers wait long nor each row for the disk. A stopped run keeps what was written.
 */
class RemakeThumbnailsOperation
{
public:
    RemakeThumbnailsOperation(FileOperationWorker &worker, const FileOperation &request);

    void run();

private:
    /** A thumbnail that can be remade; no path for one that cannot. */
    struct Source
    {
        QString path;
        qint64 thumbnailId = 0;
    };
    QVector<qint64> fileIds();
    bool remakeBatch(const QVector<qint64> &ids, int from);
    Source sourceOf(qint64 fileId);
    bool mayGoOn() const;
    void reportProgress(int index, int count);
    bool store();
    void reportUnread();

    FileOperationWorker &m_worker;
    const FileOperation &m_request;
    ProgressThrottle m_progress;
    // Thumbnail id and picture, made but not written.
    QVector<QPair<qint64, QByteArray>> m_made;
    QStringList m_unread;
    int m_storedCount = 0;
};

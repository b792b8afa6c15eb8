#pragma once

#include "fileops/worker/fileoperation.h"

class FileOperationWorker;

/**
 * Reads the thumbnails of files and sends each as thumbnailLoaded, a null image for a file without one. Never
 * waits for a lock: those that cannot be read go out together as thumbnailsFailed.
 */
class LoadThumbnailsOperation
{
public:
    LoadThumbnailsOperation(FileOperationWorker &worker, const FileOperation &request);

    void run();

private:
    bool load(const QString &statement, qint64 fileId);

    FileOperationWorker &m_worker;
    const FileOperation &m_request;
};

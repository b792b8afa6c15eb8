#pragma once

#include "fileops/fileoperation.h"

class FileOperationWorker;

/** Reads the thumbnails of files and sends each as thumbnailLoaded, a null image for a file without one. */
class LoadThumbnailsOperation
{
public:
    LoadThumbnailsOperation(FileOperationWorker &worker, const FileOperation &request);

    void run();

private:
    FileOperationWorker &m_worker;
    const FileOperation &m_request;
};

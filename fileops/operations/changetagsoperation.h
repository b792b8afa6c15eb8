#pragma once

#include "fileops/worker/fileoperation.h"
#include "fileops/worker/progressthrottle.h"

class FileOperationWorker;

/**
 * Links many files to tags and unlinks them, all or nothing: a failure or a cancel leaves everything as it
 * was. The answer names the pairs that were really changed.
 */
class ChangeTagsOperation
{
public:
    ChangeTagsOperation(FileOperationWorker &worker, const FileOperation &request);

    void run();

private:
    /** False to end it. */
    bool goOn(qint64 done, qint64 total);

    FileOperationWorker &m_worker;
    const FileOperation &m_request;
    ProgressThrottle m_progress;
};

#pragma once

#include "fileops/fileoperation.h"
#include "fileops/progressthrottle.h"

class FileOperationWorker;

/**
 * Copies files of the database to a target path each. The first failure is told and ends it; what was copied
 * before stays. Lives on the stack of the worker's thread for one run.
 */
class ExtractFilesOperation
{
public:
    ExtractFilesOperation(FileOperationWorker &worker, const FileOperation &request);

    void run();

private:
    void reportProgress(int index, float part);
    void reportFailure();

    FileOperationWorker &m_worker;
    const FileOperation &m_request;
    const int m_count;
    ProgressThrottle m_progress;
};

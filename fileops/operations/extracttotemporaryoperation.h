#pragma once

#include "fileops/worker/fileoperation.h"

class FileOperationWorker;

/**
 * Copies internal files into the folder for temporary files and tells of those that got there, if it be none.
 * Lives on the stack of the worker's thread for one run.
 */
class ExtractToTemporaryOperation
{
public:
    ExtractToTemporaryOperation(FileOperationWorker &worker, const FileOperation &request)
        : m_worker(worker), m_request(request)
    {
    }

    void run();

private:
    FileOperationWorker &m_worker;
    const FileOperation &m_request;
};

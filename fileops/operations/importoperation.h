#pragma once

struct FileOperation;
class FileOperationWorker;

/**
 * Merges another local database or a shell into the open one. One transaction: a stop, cancel or failure
 * leaves nothing behind. Lives on the stack of the worker's thread for one run.
 */
class ImportOperation
{
public:
    ImportOperation(FileOperationWorker &worker, const FileOperation &request)
        : m_worker(worker), m_request(request)
    {
    }

    void run();

private:
    FileOperationWorker &m_worker;
    const FileOperation &m_request;
};

#pragma once

#include "fileops/contents/fileextractor.h"
#include "fileops/worker/fileoperation.h"
#include "fileops/worker/progressthrottle.h"

class FileOperationWorker;

/**
 * Copies files of the database to a target path each. Those that cannot be read, or find their place taken,
 * are named at the end; a target that takes no more ends it. What was copied stays. Lives on the stack of the
 * worker's thread for one run.
 */
class ExtractFilesOperation
{
public:
    ExtractFilesOperation(FileOperationWorker &worker, const FileOperation &request);

    void run();

private:
    FileExtractor::Existing existingAt(const QString &target) const;
    void reportProgress(int index, float part);
    void reportFailure(const FileExtractor &extractor);
    void reportLeftOut();

    FileOperationWorker &m_worker;
    const FileOperation &m_request;
    const int m_count;
    ProgressThrottle m_progress;
    QStringList m_leftOut;
};

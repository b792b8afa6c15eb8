#pragma once

#include "fileops/worker/exportrequest.h"
#include "fileops/worker/fileoperation.h"

class FileOperationWorker;

/** Writes files and tags out of the database: beside the target, which gets its name when all of it is there.
 */
class ExportOperation
{
public:
    ExportOperation(FileOperationWorker &worker, const FileOperation &operation);

    void run();

private:
    template <class Exporter>
    void finish(const Exporter &exporter, bool isDone);
    /** Empty when the target stands under its name. */
    QString giveName();
    void fail(const QString &reason);

    FileOperationWorker &m_worker;
    const ExportRequest m_request;
    const std::shared_ptr<PartFile> m_target;
};

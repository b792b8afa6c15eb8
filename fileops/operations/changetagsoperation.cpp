#include "fileops/operations/changetagsoperation.h"

#include "core/tagging/tagwriter.h"
#include "db/sql/transaction.h"
#include "fileops/worker/fileoperationworker.h"

ChangeTagsOperation::ChangeTagsOperation(FileOperationWorker &worker, const FileOperation &request)
    : m_worker(worker), m_request(request)
{
}

void ChangeTagsOperation::run()
{
    const int files = Tagging::files(m_request.tagChanges).size();
    const qint64 pairs = Tagging::pairs(m_request.tagChanges);
    m_worker.report().setDone(0, files);
    Transaction transaction(m_worker, m_worker.connectionName());
    TagWriter writer(m_worker, m_worker.connectionName());
    const auto step = [this, pairs](qint64 done) { return goOn(done, pairs); };
    if (!transaction.isActive() || !writer.write(m_request.tagChanges, step) || m_worker.shouldEnd() ||
        !transaction.commit())
        return;
    m_worker.report().setDone(files, files);
    if (!writer.done().isEmpty())
        emit m_worker.tagsChanged(writer.done());
}

bool ChangeTagsOperation::goOn(qint64 done, qint64 total)
{
    const auto percent = static_cast<int>(100 * done / total);
    if (m_progress.isDue(percent))
        emit m_worker.operationProgress(m_request.type, QString(), percent);
    return !m_worker.shouldEnd();
}

#include "fileops/operations/extractfilesoperation.h"

#include "fileops/adding/firstnames.h"
#include "fileops/worker/fileoperationworker.h"

#include <QDebug>

ExtractFilesOperation::ExtractFilesOperation(FileOperationWorker &worker, const FileOperation &request)
    : m_worker(worker), m_request(request), m_count(qMin(request.fileIds.size(), request.paths.size()))
{
}

void ExtractFilesOperation::run()
{
    FileExtractor extractor(&m_worker);
    if (!m_request.comparedPaths.isEmpty())
        extractor.setReserved({m_request.paths.cbegin(), m_request.paths.cend()});
    int index = 0;
    bool hasFailed = false;
    QObject::connect(&extractor, &FileExtractor::progress, &extractor,
                     [this, &index](float part) { reportProgress(index, part); });
    for (; index < m_count; ++index) {
        if (m_worker.shouldEnd()) {
            qDebug("ExtractFilesOperation::run() - stopped! Exiting.");
            break;
        }
        const QString &target = m_request.paths.at(index);
        const FileExtractor::Outcome outcome =
            extractor.extractToFile(m_request.fileIds.at(index), target, existingAt(target));
        hasFailed = outcome == FileExtractor::Failed;
        if (hasFailed)
            break;
        if (outcome == FileExtractor::LeftOut)
            m_leftOut.append(extractor.isCutShort()
                                 ? FileOperationWorker::tr("%1 (only its beginning)").arg(extractor.source())
                                 : extractor.source());
        reportProgress(index, 1);
    }
    m_worker.report().setDone(index - m_leftOut.size(), m_count);
    if (hasFailed)
        reportFailure(extractor);
    reportLeftOut();
}

FileExtractor::Existing ExtractFilesOperation::existingAt(const QString &target) const
{
    if (m_request.replacedPaths.contains(target))
        return FileExtractor::Replace;
    return m_request.comparedPaths.contains(target) ? FileExtractor::Compare : FileExtractor::Keep;
}

void ExtractFilesOperation::reportProgress(int index, float part)
{
    const int percent = qRound((float(index) + part) / float(m_count) * 100.0F);
    if (m_progress.isDue(percent, index + 1 == m_count && part >= 1))
        emit m_worker.operationProgress(m_request.type, FileOperationWorker::tr("Extracting Files..."),
                                        percent);
}

void ExtractFilesOperation::reportFailure(const FileExtractor &extractor)
{
    // Half a file under a whole name is told of in any case.
    const QString cut =
        FileOperationWorker::tr("Only its beginning was written:\n%1").arg(extractor.target());
    const QString outcome = m_worker.report().shortfall().outcome;
    if (extractor.isCutShort())
        m_worker.report().setOutcome(outcome + QLatin1Char('\n') + cut);
    // A cancel is no failure, and what the database refuses has its own word.
    if (m_worker.shouldEnd() || m_worker.isConnectionLost() || m_worker.report().hasErrors())
        return;
    QStringList parts = {FileOperationWorker::tr(
        "An error has occurred while extracting a file. This may be a memory-related problem, so closing any "
        "applications which consume large amounts of memory should fix it.")};
    if (!extractor.reason().isEmpty())
        parts += FileOperationWorker::tr("The system says: %1").arg(extractor.reason());
    parts +=
        extractor.isCutShort() ? cut : FileOperationWorker::tr("Not written:\n%1").arg(extractor.target());
    parts += outcome;
    emit m_worker.error(parts.join(QLatin1String("\n\n")), FileOperationWorker::tr("Error extracting file"));
}

void ExtractFilesOperation::reportLeftOut()
{
    if (m_leftOut.isEmpty())
        return;
    const QString text =
        m_leftOut.size() == 1
            ? FileOperationWorker::tr("This file could not be read, or could not get its name in the "
                                      "folder, and was not extracted:\n\n%1")
            : FileOperationWorker::tr("These files could not be read, or could not get their names in the "
                                      "folder, and were not extracted:\n\n%1");
    emit m_worker.error(text.arg(firstNames(m_leftOut)), FileOperationWorker::tr("Error extracting file"));
}

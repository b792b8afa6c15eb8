#include "fileops/operations/extracttotemporaryoperation.h"

#include "fileops/contents/fileextractor.h"
#include "fileops/worker/fileoperationworker.h"
#include "fileops/worker/progressthrottle.h"

void ExtractToTemporaryOperation::run()
{
    FileExtractor extractor(&m_worker);
    ProgressThrottle throttle;
    const int count = m_request.fileIds.size();
    int index = 0;
    QObject::connect(&extractor, &FileExtractor::progress, &extractor, [&](float part) {
        const int percent = qRound((float(index) + part) / float(count) * 100.0F);
        if (throttle.isDue(percent))
            emit m_worker.operationProgress(m_request.type, QString(), percent);
    });
    QVector<QPair<qint64, QString>> copies;
    for (; index < count && !m_worker.shouldEnd(); ++index) {
        const qint64 fileId = m_request.fileIds.at(index);
        const QString path = extractor.extractToTemporary(fileId);
        if (!path.isEmpty())
            copies.append({fileId, path});
    }
    m_worker.report().setDone(copies.size(), count);
    emit m_worker.extractedTempFiles(copies);
}

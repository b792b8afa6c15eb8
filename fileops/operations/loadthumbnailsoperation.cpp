#include "fileops/operations/loadthumbnailsoperation.h"

#include "db/sql/abstractqueryconstructor.h"
#include "fileops/pictures/thumbnailmaker.h"
#include "fileops/worker/fileoperationworker.h"

#include <QSignalBlocker>

#include <memory>

LoadThumbnailsOperation::LoadThumbnailsOperation(FileOperationWorker &worker, const FileOperation &request)
    : m_worker(worker), m_request(request)
{
}

void LoadThumbnailsOperation::run()
{
    const AbstractQueryConstructor &dialect = *m_worker.constructor();
    const QString from =
        QStringLiteral("files") +
        dialect.joinQuery(NaturalJoin, QStringLiteral("thumbnails"), QStringLiteral("file_id=?"));
    const QString statement =
        dialect.selectQuery({QStringLiteral("thumbnail")}, from) + dialect.statementEnd();
    m_worker.setPatient(false);
    QVector<qint64> failed;
    for (const qint64 id : m_request.fileIds) {
        // A cancel is meant for batches: a view would wait for its picture for ever.
        if (m_worker.isStopped() || m_worker.isConnectionLost())
            return;
        if (id > 0 && !load(statement, id))
            failed.append(id);
    }
    if (m_worker.isConnectionLost())
        return;
    if (!failed.isEmpty())
        emit m_worker.thumbnailsFailed(failed, m_worker.lastError());
    m_worker.setPatient(true);
}

bool LoadThumbnailsOperation::load(const QString &statement, qint64 fileId)
{
    TableData table;
    bool isRead = false;
    {
        // Who hears of the failed ones decides what is worth a word.
        const QSignalBlocker blocker(&m_worker);
        isRead = m_worker.runFast(statement, {fileId}, table);
    }
    if (m_worker.isConnectionLost())
        emit m_worker.connectionError();
    if (!isRead)
        return false;
    auto image = std::make_unique<QImage>();
    if (!table.isEmpty())
        *image = ThumbnailMaker::decoded(table.first()->at(0).toByteArray());
    freeRows(table);
    m_worker.sendThumbnail(fileId, image.release());
    return true;
}

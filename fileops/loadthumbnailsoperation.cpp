#include "fileops/loadthumbnailsoperation.h"

#include "db/abstractqueryconstructor.h"
#include "fileops/fileoperationworker.h"

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
    for (const qint64 id : m_request.fileIds) {
        // A cancel is meant for batches: a view would wait for its picture for ever.
        if (m_worker.isStopped() || m_worker.isConnectionLost())
            return;
        TableData table;
        if (id <= 0 || !m_worker.runFast(statement, {id}, table))
            continue;
        auto image = std::make_unique<QImage>();
        if (!table.isEmpty())
            image->loadFromData(table.first()->at(0).toByteArray(), "PNG");
        freeRows(table);
        m_worker.sendThumbnail(id, image.release());
    }
}

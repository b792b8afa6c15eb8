#include "fileops/remakethumbnailsoperation.h"

#include "core/filekind.h"
#include "db/abstractqueryconstructor.h"
#include "db/transaction.h"
#include "fileops/fileoperationworker.h"
#include "fileops/progressthrottle.h"
#include "fileops/thumbnailmaker.h"

#include <QDebug>

#include <algorithm>
#include <utility>

namespace {
constexpr int storedAtOnce = 200;
}

RemakeThumbnailsOperation::RemakeThumbnailsOperation(FileOperationWorker &worker,
                                                     const FileOperation &request)
    : m_worker(worker), m_request(request)
{
}

void RemakeThumbnailsOperation::run()
{
    qDebug() << "FileOperationWorker::remakeThumbnailsInDB() for " << m_request.fileIds;
    const QVector<qint64> ids = fileIds();
    ProgressThrottle progress;
    for (int i = 0; i < ids.size(); ++i) {
        if (m_worker.shouldEnd() || m_worker.isConnectionLost()) {
            qDebug("FileOperationWorker::remakeThumbnailsInDB() - stopped! Exiting.");
            break;
        }
        remakeThumbnail(ids.at(i));
        const int percent = FileOperationWorker::percent(i, ids.size());
        if (progress.isDue(percent))
            emit m_worker.operationProgress(m_request.type, FileOperationWorker::tr("Remaking thumbnails..."),
                                            percent);
        // What one batch met, a full disk or a lock, would stop all behind it too.
        if (m_made.size() >= storedAtOnce && !store())
            break;
    }
    store();
    emit m_worker.remadeAllThumbnails();
}

QVector<qint64> RemakeThumbnailsOperation::fileIds()
{
    if (!m_request.fileIds.isEmpty())
        return m_request.fileIds;
    const AbstractQueryConstructor &dialect = *m_worker.constructor();
    TableData table;
    m_worker.runAsync(dialect.selectQuery({QStringLiteral("file_id")}, QStringLiteral("files")) +
                          dialect.whereClause(QStringLiteral("internal=0 AND thumbnail_id>0")) +
                          dialect.statementEnd(),
                      table);
    QVector<qint64> ids;
    ids.reserve(table.size());
    for (const TableRowData *row : qAsConst(table))
        ids.append(row->at(0).toLongLong());
    freeRows(table);
    return ids;
}

void RemakeThumbnailsOperation::remakeThumbnail(qint64 fileId)
{
    int internal = 0;
    if (!m_worker.readInternal(fileId, internal) || internal == FileKind::external)
        remakeThumbnailExternalFile(fileId);
    else if (internal == FileKind::internal)
        qDebug("FileOperationWorker::remakeThumbnailsInDB() - file is internal.  Doing nothing");
}

void RemakeThumbnailsOperation::remakeThumbnailExternalFile(qint64 fileId)
{
    qDebug() << "FileOperationWorker::remakeThumbnailInternalFile() " << fileId;
    QString path;
    qint64 thumbnailId = 0;
    if (!m_worker.readThumbnailSource(fileId, path, thumbnailId) || thumbnailId <= 0)
        return;
    const QByteArray png = ThumbnailMaker::encoded(ThumbnailMaker::thumbnailOf(path));
    if (!png.isEmpty())
        m_made.append({thumbnailId, png});
}

bool RemakeThumbnailsOperation::store()
{
    if (m_made.isEmpty() || m_worker.isConnectionLost())
        return m_made.isEmpty();
    const QVector<QPair<qint64, QByteArray>> made = std::exchange(m_made, {});
    Transaction transaction(m_worker, m_worker.connectionName());
    if (!transaction.isActive())
        return false;
    ThumbnailMaker maker(m_worker);
    const bool areStored = std::all_of(made.cbegin(), made.cend(), [&maker](const auto &thumbnail) {
        return maker.store(thumbnail.second, thumbnail.first, false);
    });
    return areStored && transaction.commit();
}

#include "fileops/operations/remakethumbnailsoperation.h"

#include "core/records/filekind.h"
#include "db/sql/abstractqueryconstructor.h"
#include "db/sql/transaction.h"
#include "fileops/adding/firstnames.h"
#include "fileops/pictures/thumbnailmaker.h"
#include "fileops/pictures/thumbnailsahead.h"
#include "fileops/worker/fileoperationworker.h"

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
    for (int from = 0; from < ids.size(); from += storedAtOnce) {
        // What one batch met, a full disk or a lock, would stop all behind it too.
        if (!remakeBatch(ids, from))
            break;
    }
    m_worker.report().setDone(m_storedCount, ids.size());
    reportUnread();
    emit m_worker.remadeAllThumbnails();
}

bool RemakeThumbnailsOperation::remakeBatch(const QVector<qint64> &ids, int from)
{
    const int to = qMin(from + storedAtOnce, ids.size());
    QVector<Source> sources(to - from);
    QStringList paths;
    for (int i = from; i < to && mayGoOn(); ++i) {
        sources[i - from] = sourceOf(ids.at(i));
        if (!sources.at(i - from).path.isEmpty())
            paths.append(sources.at(i - from).path);
    }
    ThumbnailsAhead thumbnails(paths, [this] { return !mayGoOn(); });
    for (int i = from; i < to; ++i) {
        if (!mayGoOn()) {
            qDebug("FileOperationWorker::remakeThumbnailsInDB() - stopped! Exiting.");
            break;
        }
        const Source &source = sources.at(i - from);
        if (!source.path.isEmpty()) {
            const QByteArray png = thumbnails.pngOf(source.path);
            if (!png.isEmpty())
                m_made.append({source.thumbnailId, png});
            else if (mayGoOn())
                m_unread.append(source.path);
        }
        reportProgress(i, ids.size());
    }
    return store() && mayGoOn();
}

bool RemakeThumbnailsOperation::mayGoOn() const
{
    return !m_worker.shouldEnd() && !m_worker.isConnectionLost() && !m_worker.hasMetLock();
}

void RemakeThumbnailsOperation::reportProgress(int index, int count)
{
    const int percent = FileOperationWorker::percent(index, count);
    if (m_progress.isDue(percent))
        emit m_worker.operationProgress(m_request.type, FileOperationWorker::tr("Remaking thumbnails..."),
                                        percent);
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

RemakeThumbnailsOperation::Source RemakeThumbnailsOperation::sourceOf(qint64 fileId)
{
    int internal = 0;
    if (m_worker.readInternal(fileId, internal) && internal != FileKind::external) {
        if (internal == FileKind::internal)
            qDebug("FileOperationWorker::remakeThumbnailsInDB() - file is internal.  Doing nothing");
        return {};
    }
    qDebug() << "FileOperationWorker::remakeThumbnailInternalFile() " << fileId;
    Source source;
    const bool isThere = m_worker.readThumbnailSource(fileId, source.path, source.thumbnailId);
    return isThere && source.thumbnailId > 0 ? source : Source();
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
    if (!areStored || !transaction.commit())
        return false;
    m_storedCount += made.size();
    return true;
}

void RemakeThumbnailsOperation::reportUnread()
{
    if (m_unread.isEmpty())
        return;
    const int count = m_unread.size();
    const QString text =
        count == 1 ? FileOperationWorker::tr("This picture could not be read and keeps its thumbnail:\n\n%1")
                   : FileOperationWorker::tr(
                         "%Ln pictures could not be read and keep their thumbnails:\n\n%1", nullptr, count);
    emit m_worker.error(text.arg(firstNames(m_unread)), FileOperationWorker::tr("Thumbnails not remade"));
}

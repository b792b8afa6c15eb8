#include "fileops/operations/deletefilesoperation.h"

#include "app/settings/constants.h"
#include "core/records/filekind.h"
#include "db/sql/abstractqueryconstructor.h"
#include "db/sql/sqltext.h"
#include "db/sql/transaction.h"
#include "fileops/contents/externalpaths.h"
#include "fileops/looks/filelooks.h"
#include "fileops/worker/fileoperationworker.h"

#include <QDir>

#include <algorithm>

namespace {
constexpr int rowsAtOnce = 10000;
} // namespace

DeleteFilesOperation::DeleteFilesOperation(FileOperationWorker &worker, const FileOperation &request,
                                           const Farewell &farewell)
    : m_worker(worker),
      m_request(request),
      m_farewell(farewell),
      m_blocks(ProviderConnection(worker, worker.connectionName()))
{
}

void DeleteFilesOperation::run()
{
    if (m_request.fileIds.isEmpty())
        return;
    m_worker.report().setDone(0, m_request.fileIds.size());
    Transaction transaction(m_worker, Constants::workerConnection);
    if (!transaction.isActive())
        return;
    const QVector<qint64> removed = removeContents();
    if (m_worker.isSavepointLost() || !removeRows(removed) || !transaction.commit())
        return;
    m_worker.report().setDone(removed.size(), m_request.fileIds.size());
    emit m_worker.filesRemoved(removed);
}

QVector<qint64> DeleteFilesOperation::removeContents()
{
    QVector<qint64> removed;
    int shownPercent = -1;
    for (int i = 0; i < m_request.fileIds.size(); ++i) {
        if (m_worker.shouldEnd() || m_worker.isSavepointLost())
            break;
        const int percent = FileOperationWorker::percent(i, m_request.fileIds.size());
        if (percent != shownPercent)
            emit m_worker.operationProgress(FileOperationType::DeleteFilesOperation, QString(), percent);
        shownPercent = percent;

        const qint64 fileId = m_request.fileIds.at(i);
        int internal = 0;
        qint64 size = 0;
        qint64 storageId = 0;
        if (m_worker.readFileStorageInfo(fileId, internal, size, storageId, m_request.idCodes.value(i)) &&
            !(m_request.onlyMissing && isInPlace(fileId)) &&
            removeContentsOf(fileId, internal, size, storageId))
            removed.append(fileId);
    }
    return removed;
}

bool DeleteFilesOperation::isInPlace(qint64 fileId)
{
    QVector<ExternalFileDetails> details;
    QHash<qint64, QString> relativePaths;
    // What the database does not say is not known to be missing.
    if (!m_worker.readExternalFileDetails({fileId}, details) || details.isEmpty() ||
        !m_worker.readRelativePaths({fileId}, relativePaths))
        return true;
    const Database::PathLocator locator = Database::pathLocator(m_worker.connectionName());
    const QString relative = relativePaths.value(fileId);
    QStringList places = {details.first().path};
    if (locator.isLocal && !relative.isEmpty())
        places.append(QDir::cleanPath(Database::absolutePath(relative, locator)));
    const QVector<AnsweredLook> looks = FileLooks::at(places, [this] { return m_worker.shouldEnd(); });
    // Nor is what a disk does not say.
    return std::any_of(looks.cbegin(), looks.cend(),
                       [](const AnsweredLook &found) { return !found.isAbsent(); });
}

bool DeleteFilesOperation::removeContentsOf(qint64 fileId, int internal, qint64 size, qint64 storageId)
{
    static const QString deletePath =
        QStringLiteral("DELETE FROM file_paths WHERE path_id = (SELECT storage_id FROM files WHERE file_id=? "
                       "AND internal=0);");
    const bool hasPath = internal == FileKind::external;
    const bool hasBlocks = internal == FileKind::internal && size != 0;
    if (!hasPath && !hasBlocks && !m_farewell)
        return true;
    Savepoint savepoint(m_worker);
    if (!savepoint.isActive())
        return false;
    if (m_farewell && !m_farewell(fileId))
        return false;
    if (hasPath && !m_worker.runFast(deletePath, {fileId}))
        return false;
    if (hasBlocks && !m_blocks.removeBlocksOf(fileId, storageId, size))
        return false;
    return savepoint.release();
}

bool DeleteFilesOperation::removeRows(const QVector<qint64> &ids)
{
    const AbstractQueryConstructor &dialect = *m_worker.constructor();
    for (int start = 0; start < ids.size(); start += rowsAtOnce) {
        const QVector<qint64> chunk = ids.mid(start, rowsAtOnce);
        const QString condition =
            dialect.whereClause(dialect.inClause(QStringLiteral("file_id"), SqlText::idTexts(chunk)));
        // Thumbnails first: they are found through the files.
        if (!m_worker.runAsync(
                SqlText::fill(QStringLiteral("DELETE FROM thumbnails WHERE thumbnail_id IN("
                                             "SELECT thumbnail_id FROM files WHERE file_id IN (%1));"),
                              {SqlText::idList(chunk)})) ||
            !m_worker.runAsync(dialect.deleteQuery(QStringLiteral("file_tag")) + condition +
                               dialect.statementEnd()) ||
            !m_worker.runAsync(dialect.deleteQuery(QStringLiteral("files")) + condition +
                               dialect.statementEnd()))
            return false;
    }
    return true;
}

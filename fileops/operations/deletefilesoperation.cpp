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
#include <QSignalBlocker>

#include <algorithm>

namespace {
constexpr int rowsAtOnce = 10000;
// Runs are what a cancel is heard between: a twentieth of all, as long as they stay long and short enough.
constexpr int leastInRun = 8;
constexpr int mostInRun = 500;
constexpr int runs = 20;
constexpr qint64 mostBytesInRun = qint64(64) * 1024 * 1024;
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

bool DeleteFilesOperation::mayGoOn() const
{
    return !m_worker.shouldEnd() && !m_worker.isSavepointLost();
}

QVector<qint64> DeleteFilesOperation::removeContents()
{
    QVector<qint64> removed;
    const int filesInRun = qBound(leastInRun, m_request.fileIds.size() / runs, mostInRun);
    for (int from = 0, to = 0; from < m_request.fileIds.size() && mayGoOn(); from = to) {
        to = qMin(from + filesInRun, m_request.fileIds.size());
        tellProgress(from);
        if (removeRun(from, to, removed))
            continue;
        for (int i = from; i < to && mayGoOn(); ++i) {
            tellProgress(i);
            if (removeSingly(i))
                removed.append(m_request.fileIds.at(i));
        }
    }
    return removed;
}

void DeleteFilesOperation::tellProgress(int index)
{
    const int percent = FileOperationWorker::percent(index, m_request.fileIds.size());
    if (percent != m_shownPercent)
        emit m_worker.operationProgress(FileOperationType::DeleteFilesOperation, QString(), percent);
    m_shownPercent = percent;
}

bool DeleteFilesOperation::removeRun(int from, int to, QVector<qint64> &removed)
{
    // Each of them is asked about by itself.
    if (m_farewell || m_request.onlyMissing || to - from < 2)
        return false;
    const BlockRemoval before = m_blocks;
    QHash<qint64, StorageInfo> files;
    Savepoint savepoint(m_worker);
    {
        const QSignalBlocker blocker(&m_worker);
        bool isDone =
            savepoint.isActive() && m_worker.readStorageInfos(m_request.fileIds.mid(from, to - from), files);
        for (int i = from; i < to && isDone; ++i) {
            const QString idCode = m_request.idCodes.value(i).trimmed();
            const auto file = files.find(m_request.fileIds.at(i));
            if (file != files.end() && !idCode.isEmpty() && file->idCode != idCode)
                files.erase(file);
        }
        isDone = isDone && removeContentsOf(files) && savepoint.release();
        if (isDone) {
            for (int i = from; i < to; ++i) {
                if (files.contains(m_request.fileIds.at(i)))
                    removed.append(m_request.fileIds.at(i));
            }
            return true;
        }
    }
    m_blocks = before;
    m_worker.takeBack(savepoint);
    return false;
}

bool DeleteFilesOperation::removeContentsOf(const QHash<qint64, StorageInfo> &files)
{
    QVector<qint64> external;
    QVector<qint64> internal;
    qint64 bytes = 0;
    for (auto file = files.cbegin(); file != files.cend(); ++file) {
        if (file->internal == FileKind::external)
            external.append(file.key());
        else if (file->internal == FileKind::internal && file->size != 0)
            internal.append(file.key());
        bytes += file->internal == FileKind::internal ? file->size : 0;
    }
    // A cancel is heard between the files.
    if (bytes > mostBytesInRun)
        return false;
    if (!external.isEmpty() &&
        !m_worker.runAsync(SqlText::fill(
            QStringLiteral("DELETE FROM file_paths WHERE path_id IN (SELECT storage_id FROM files "
                           "WHERE internal=0 AND file_id IN (%1));"),
            {SqlText::idList(external)})))
        return false;
    return internal.isEmpty() || m_blocks.removeOrdinary(internal);
}

bool DeleteFilesOperation::removeSingly(int index)
{
    const qint64 fileId = m_request.fileIds.at(index);
    int internal = 0;
    qint64 size = 0;
    qint64 storageId = 0;
    return m_worker.readFileStorageInfo(fileId, internal, size, storageId, m_request.idCodes.value(index)) &&
           !(m_request.onlyMissing && isInPlace(fileId)) &&
           removeContentsOf(fileId, internal, size, storageId);
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

#include "fileops/operations/locatefilesoperation.h"

#include "core/records/filekind.h"
#include "db/sql/transaction.h"
#include "fileops/contents/externalpaths.h"
#include "fileops/looks/filelooks.h"
#include "fileops/operations/storedpaths.h"
#include "fileops/worker/fileoperationworker.h"

namespace {
// The window takes in what a slice has changed without a stop.
constexpr int filesInSlice = 500;
} // namespace

LocateFilesOperation::LocateFilesOperation(FileOperationWorker &worker, const FileOperation &request)
    : m_worker(worker), m_request(request)
{
}

void LocateFilesOperation::run()
{
    const int count = m_request.fileIds.size();
    for (int first = 0; first < count && !m_worker.shouldEnd(); first += filesInSlice) {
        if (!writeSlice(first, qMin(first + filesInSlice, count)))
            break;
    }
    m_worker.report().setDone(m_located.size(), count);
    FileOperation check;
    check.type = FileOperationType::CheckExternalFilesOperation;
    check.fileIds = m_located;
    if (!m_located.isEmpty())
        m_worker.enqueue(check);
}

bool LocateFilesOperation::writeSlice(int first, int last)
{
    const auto isUnwanted = [this] { return m_worker.shouldEnd(); };
    // Not while the database is locked.
    const QStringList paths = m_request.paths.mid(first, last - first);
    const QVector<AnsweredLook> looks = FileLooks::at(paths, isUnwanted);
    Transaction transaction(m_worker, m_worker.connectionName());
    QHash<QString, qint64> stored;
    if (!transaction.isActive() || !StoredPaths::read(m_worker, paths, stored))
        return false;
    QVector<qint64> written;
    for (int i = first; i < last; ++i) {
        if (m_worker.shouldEnd() || m_worker.isSavepointLost() || m_worker.isConnectionLost())
            break;
        reportProgress(i);
        // Another record may have come by the file since it was found, as a linked folder brings them in.
        const qint64 fileId = m_request.fileIds.at(i);
        if (!looks.value(i - first).look.isThere || stored.value(m_request.paths.value(i), fileId) != fileId)
            continue;
        Savepoint savepoint(m_worker);
        if (savepoint.isActive() && writeFile(i) && savepoint.release())
            written.append(fileId);
    }
    if (written.isEmpty())
        return !m_worker.report().hasErrors();
    if (m_worker.isSavepointLost() || !transaction.commit())
        return false;
    m_located += written;
    emit m_worker.updatedFiles(written);
    emit m_worker.present(written);
    return true;
}

bool LocateFilesOperation::writeFile(int index)
{
    static const QString movePath =
        QStringLiteral("UPDATE file_paths SET path=?,rel_path=? WHERE path_id=?;");
    static const QString rename = QStringLiteral("UPDATE files SET file_name=? WHERE file_id=?;");
    const qint64 fileId = m_request.fileIds.at(index);
    const QString path = m_request.paths.value(index);
    int internal = 0;
    qint64 size = 0;
    qint64 pathId = 0;
    if (!m_worker.readFileStorageInfo(fileId, internal, size, pathId, m_request.idCodes.value(index)) ||
        internal != FileKind::external)
        return false;
    const QString relPath = Database::relativePath(path, Database::pathLocator(m_worker.connectionName()));
    const QString name = path.mid(path.lastIndexOf(QLatin1Char('/')) + 1);
    return m_worker.runFast(movePath, {path, relPath, pathId}) && m_worker.runFast(rename, {name, fileId});
}

void LocateFilesOperation::reportProgress(int index)
{
    const int percent = FileOperationWorker::percent(index, m_request.fileIds.size());
    if (m_progress.isDue(percent))
        emit m_worker.operationProgress(m_request.type, QString(), percent);
}

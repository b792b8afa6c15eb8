#include "fileops/operations/locatefilesoperation.h"

#include "core/records/filekind.h"
#include "db/sql/abstractqueryconstructor.h"
#include "db/sql/transaction.h"
#include "fileops/contents/externalpaths.h"
#include "fileops/looks/filelooks.h"
#include "fileops/worker/fileoperationworker.h"

#include <QThread>

namespace {
// The window takes in what a slice has changed without a stop.
constexpr int filesInSlice = 500;
// Each waits for some seconds by itself.
constexpr int mostTries = 15;
constexpr int pauseMilliseconds = 200;
constexpr int pathsInQuestion = 5000;
} // namespace

LocateFilesOperation::LocateFilesOperation(FileOperationWorker &worker, const FileOperation &request)
    : m_worker(worker), m_request(request)
{
}

void LocateFilesOperation::run()
{
    const int count = m_request.fileIds.size();
    readOwners();
    for (int first = 0; first < count && !m_worker.shouldEnd(); first += filesInSlice) {
        if (!outwaitLock(first, qMin(first + filesInSlice, count)))
            break;
    }
    m_worker.report().setDone(m_located.size(), count);
    FileOperation check;
    check.type = FileOperationType::CheckExternalFilesOperation;
    check.fileIds = m_located;
    if (!m_located.isEmpty())
        m_worker.enqueue(check);
}

void LocateFilesOperation::readOwners()
{
    const AbstractQueryConstructor &sql = *m_worker.constructor();
    for (int from = 0; from < m_request.paths.size() && !m_worker.shouldEnd(); from += pathsInQuestion) {
        TableData rows;
        // One walk for many, as no index knows paths.
        m_worker.runAsync(
            QStringLiteral("SELECT path,file_id FROM files,file_paths WHERE path_id=storage_id AND "
                           "internal=0 AND ") +
                sql.inClause(QStringLiteral("path"), m_request.paths.mid(from, pathsInQuestion)) +
                sql.statementEnd(),
            rows);
        for (const TableRowData *row : qAsConst(rows))
            m_owners.insert(row->at(0).toString(), row->at(1).toLongLong());
        freeRows(rows);
    }
}

bool LocateFilesOperation::outwaitLock(int first, int last)
{
    for (int tries = 1; !writeSlice(first, last); ++tries) {
        const bool hasFailed = m_worker.report().hasErrors() && !m_worker.hasMetLock();
        if (tries == mostTries || m_worker.shouldEnd() || hasFailed)
            return false;
        // What others have written is being read by the window: the codes say which files are meant still.
        QThread::msleep(pauseMilliseconds);
        m_worker.report().begin(m_request.type);
    }
    return true;
}

bool LocateFilesOperation::writeSlice(int first, int last)
{
    const auto isUnwanted = [this] { return m_worker.shouldEnd(); };
    // Not while the database is locked.
    const QStringList paths = m_request.paths.mid(first, last - first);
    const QVector<AnsweredLook> looks = FileLooks::at(paths, isUnwanted);
    Transaction transaction(m_worker, m_worker.connectionName());
    if (!transaction.isActive())
        return false;
    QVector<qint64> written;
    for (int i = first; i < last; ++i) {
        if (m_worker.shouldEnd() || m_worker.isSavepointLost() || m_worker.isConnectionLost())
            break;
        reportProgress(i);
        // Another record may have come by the file since it was found, as a linked folder brings them in.
        const qint64 fileId = m_request.fileIds.at(i);
        if (!looks.value(i - first).look.isThere ||
            m_owners.value(m_request.paths.value(i), fileId) != fileId)
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

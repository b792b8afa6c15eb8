#include "fileops/operations/addfilelistoperation.h"

#include "app/settings/addingsettings.h"
#include "core/records/filekind.h"
#include "db/sql/transaction.h"
#include "fileops/adding/leftoutfiles.h"
#include "fileops/worker/fileoperationworker.h"

#include <QFileInfo>

AddFileListOperation::AddFileListOperation(FileOperationWorker &worker, const FileOperation &request)
    : AddOperation(worker, request, FileOperationType::AddFilesOperation)
{
}

void AddFileListOperation::run()
{
    announceFiles(AddingSettings::linkToFiles());
    const bool areAdded = addFilesToDB();
    emit m_worker.finishedOpration(m_type);
    emit m_worker.additionSettled(m_request.paths, areAdded);
}

bool AddFileListOperation::addFilesToDB()
{
    m_worker.report().setDone(0, m_request.paths.size());
    Transaction transaction(m_worker, m_worker.connectionName());
    if (!transaction.isActive())
        return false;
    emit m_worker.operationProgress(m_type, FileOperationWorker::tr("Gathering file information"), 0);
    QStringList files;
    QStringList hyperlinks;
    for (const QString &path : m_request.paths) {
        // Names of hyperlinks meet those of files too, and these come back the same way.
        if (FileAdder::isLocal(path))
            files.append(path);
        else if (!path.isEmpty())
            hyperlinks.append(path);
    }
    QVector<qint64> added =
        addBatch(files, AddingSettings::linkToFiles() ? FileKind::external : FileKind::internal);
    added += addBatch(hyperlinks, FileKind::hyperlink);
    if (!mayCommit()) {
        qDebug("FileOperationWorker::addFilesToDB() - stopped! Exiting.");
        return false;
    }
    if (!transaction.commit())
        return false;
    m_worker.report().setDone(added.size(), m_request.paths.size());
    if (!added.isEmpty())
        emit m_worker.updatedFiles(added);
    tellAdded(added.size());
    LeftOutFiles leftOut;
    leftOut.unreadable = m_unread;
    tellLeftOut(leftOut);
    return !added.isEmpty();
}

QVector<qint64> AddFileListOperation::addBatch(const QStringList &paths, qint32 kind)
{
    FileBatchRequest batch;
    batch.type = m_type;
    batch.kind = kind;
    for (const QString &path : paths) {
        // Only what is a file by now is opened: a pipe of the same name would wake its writer.
        if (kind == FileKind::hyperlink || QFileInfo(path).isFile())
            batch.paths.append(path);
        else
            m_unread.append(path);
    }
    batch.paths.removeDuplicates();
    FileBatch added(m_worker, batch);
    const QVector<qint64> ids = added.addFilesListToDb();
    m_unread += added.unread();
    return ids;
}

#include "fileops/operations/transferfilesoperation.h"

#include "core/records/filekind.h"
#include "db/sql/transaction.h"
#include "fileops/adding/firstnames.h"
#include "fileops/files/regularfile.h"
#include "fileops/worker/fileoperationworker.h"

#include <QDebug>
#include <QSet>

TransferFilesOperation::TransferFilesOperation(FileOperationWorker &worker, const FileOperation &request)
    : m_worker(worker), m_request(request), m_writer(worker)
{
}

void TransferFilesOperation::run()
{
    const QVector<Source> sources = findSources();
    QVector<qint64> transferred;
    for (Source source : sources) {
        if (m_worker.shouldEnd()) {
            qDebug("TransferFilesOperation::run() - stopped! Exiting.");
            break;
        }
        reportProgress(source, 0);
        const ContentWriter::Outcome outcome = transfer(source);
        // What one file met, a full disk or a lock, would stop all behind it too.
        if (outcome == ContentWriter::Failed)
            break;
        if (outcome == ContentWriter::Stored)
            transferred.append(source.fileId);
        else
            m_unread.append(source.path);
        m_doneBytes += source.size;
    }
    m_worker.report().setDone(transferred.size(), m_request.fileIds.size());
    if (!transferred.isEmpty())
        emit m_worker.updatedFiles(transferred);
    reportUnread();
}

QVector<TransferFilesOperation::Source> TransferFilesOperation::findSources()
{
    QVector<Source> sources;
    sources.reserve(m_request.fileIds.size());
    QSet<qint64> seen;
    for (int i = 0; i < m_request.fileIds.size(); ++i) {
        const qint64 fileId = m_request.fileIds.at(i);
        if (m_worker.shouldEnd() || m_worker.isConnectionLost() || m_worker.hasMetLock())
            return {};
        // Twice would leave the first chain without an owner.
        if (seen.contains(fileId))
            continue;
        seen.insert(fileId);
        Source source;
        source.fileId = fileId;
        source.idCode = m_request.idCodes.value(i);
        if (!readRows(source))
            continue;
        source.size = qMax(qint64(0), RegularFile::stampOf(source.path).size);
        m_totalBytes += source.size;
        sources.append(source);
    }
    return sources;
}

bool TransferFilesOperation::readRows(Source &source)
{
    int internal = 0;
    qint64 recordedSize = 0;
    return m_worker.readFileStorageInfo(source.fileId, internal, recordedSize, source.pathId,
                                        source.idCode) &&
           internal == FileKind::external && m_worker.readPath(source.fileId, source.path);
}

ContentWriter::Outcome TransferFilesOperation::transfer(Source &source)
{
    Transaction transaction(m_worker, m_worker.connectionName());
    qint64 storageId = 0;
    if (!transaction.isActive() || !m_worker.nextStorageId(storageId))
        return ContentWriter::Failed;
    // Since the list was made it may have been renamed, deleted or transferred by somebody else.
    if (!readRows(source))
        return ContentWriter::Unreadable;
    StoredContents stored;
    const ContentWriter::Outcome outcome = m_writer.store(
        source.path, storageId, {}, stored, [this, &source](qint64 bytes) { reportProgress(source, bytes); });
    if (outcome != ContentWriter::Stored)
        return outcome;
    // Half of it old and half of it new would be nobody's contents.
    if (!stored.isSnapshot)
        return ContentWriter::Unreadable;
    return changeRows(source, storageId, stored) && transaction.commit() ? ContentWriter::Stored
                                                                         : ContentWriter::Failed;
}

bool TransferFilesOperation::changeRows(const Source &source, qint64 storageId, const StoredContents &stored)
{
    static const QString deletePath = QStringLiteral("DELETE FROM file_paths WHERE path_id=?");
    static const QString updateFile =
        QStringLiteral("UPDATE files SET file_size=?,modification_date=?,storage_id=?,data_checksum=?,"
                       "internal=1 WHERE file_id=?");
    return m_worker.runFast(deletePath, {source.pathId}) &&
           m_worker.runFast(updateFile,
                            {stored.size, stored.modified, storageId, stored.checksum, source.fileId});
}

void TransferFilesOperation::reportProgress(const Source &source, qint64 storedBytes)
{
    const qint64 bytes = m_doneBytes + qMin(storedBytes, source.size);
    const int percent = m_totalBytes > 0 ? int(bytes * 100 / m_totalBytes) : 0;
    if (!m_progress.isDue(percent))
        return;
    const QString name = source.path.mid(source.path.lastIndexOf(QLatin1Char('/')) + 1);
    emit m_worker.operationProgress(m_request.type, FileOperationWorker::tr("Transferring %1").arg(name),
                                    percent);
}

void TransferFilesOperation::reportUnread()
{
    if (m_unread.isEmpty())
        return;
    const QString text =
        m_unread.size() == 1
            ? FileOperationWorker::tr(
                  "This file could not be read, or changed meanwhile, and remains external:\n\n%1")
            : FileOperationWorker::tr(
                  "These files could not be read, or changed meanwhile, and remain external:\n\n%1");
    emit m_worker.error(text.arg(firstNames(m_unread)), FileOperationWorker::tr("Error transferring files"));
}

#include "fileops/operations/addfilesoperation.h"

#include "app/settings/addingsettings.h"
#include "core/records/filekind.h"
#include "db/sql/transaction.h"
#include "fileops/adding/folderexpansion.h"
#include "fileops/adding/nodebuilder.h"
#include "fileops/looks/awaitedlook.h"
#include "fileops/worker/fileoperationworker.h"

#include <QDebug>
#include <QMutex>

#include <memory>

namespace {
/** Where a look is that another thread may leave behind. */
class Place
{
public:
    void set(const QString &path)
    {
        const QMutexLocker locker(&m_mutex);
        m_path = path;
    }
    QString path()
    {
        const QMutexLocker locker(&m_mutex);
        return m_path;
    }

private:
    QMutex m_mutex;
    QString m_path;
};

FileOperation transferOf(const QVector<qint64> &fileIds)
{
    FileOperation transfer;
    transfer.type = FileOperationType::TransferFilesOperation;
    transfer.fileIds = fileIds;
    return transfer;
}
} // namespace

AddFilesOperation::AddFilesOperation(FileOperationWorker &worker, const FileOperation &request)
    : AddOperation(worker, request, FileOperationType::AddFilesOperation)
{
}

void AddFilesOperation::run()
{
    announceFiles(AddingSettings::linkToFiles());
    const bool isToldAll = addFilesToDB();
    emit m_worker.finishedOpration(m_type);
    if (isToldAll)
        emit m_worker.duplicatesReady(m_duplicates);
}

bool AddFilesOperation::addFilesToDB()
{
    m_worker.report().setDone(0, m_request.paths.size());
    const std::optional<FolderExpansion> expanded = expand();
    if (!expanded)
        return false;
    const FolderExpansion &expansion = *expanded;
    m_worker.report().setDone(0, expansion.files().size());
    Transaction transaction(m_worker, m_worker.connectionName());
    if (!transaction.isActive())
        return true;
    FileBatchRequest batch;
    batch.type = m_type;
    batch.kind = AddingSettings::linkToFiles() ? FileKind::external : FileKind::internal;
    batch.tagIds = m_request.tagIds;
    if (AddingSettings::autoTagging() && !makeTagsAndNodes(expansion, batch))
        return true;
    emit m_worker.operationProgress(m_type, FileOperationWorker::tr("Gathering file information"), 0);
    batch.paths = expansion.files();
    if (AddingSettings::duplicateManagementEnabled() && !takeOutDuplicates(batch))
        return false;
    m_worker.report().setDone(0, batch.paths.size());
    FileBatch files(m_worker, batch);
    QVector<qint64> added = files.addFilesListToDb();
    QStringList unread = files.unread();
    noteLeftOut(files);
    added += addOtherCopies(batch, unread);
    const QVector<qint64> found = fillMissingPlaces();
    if (finish(transaction, added + found + linkMatchedFiles(batch))) {
        if (!found.isEmpty())
            emit m_worker.present(found);
        // Who has files copied into the database may delete them on the disk afterwards.
        if (!found.isEmpty() && batch.kind == FileKind::internal)
            m_worker.enqueue(transferOf(found));
        m_worker.report().setDone(added.size(), batch.paths.size());
        tellAdded(added.size(), m_newNodes);
        LeftOutFiles leftOut = expansion.leftOut();
        leftOut.unreadable += unread;
        tellLeftOut(leftOut);
    }
    return true;
}

std::optional<FolderExpansion> AddFilesOperation::expand()
{
    const auto place = std::make_shared<Place>();
    const auto look = [paths = m_request.paths, place](const AwaitedLook::ShouldEnd &shouldEnd) {
        FolderExpansion expansion(shouldEnd, [&place = *place](const QString &path) { place.set(path); });
        expansion.expand(paths);
        return expansion;
    };
    std::optional<FolderExpansion> found = AwaitedLook::run(look, [this] { return m_worker.shouldEnd(); });
    if (!found && !m_worker.shouldEnd())
        tellSilence(place->path());
    return found;
}

bool AddFilesOperation::makeTagsAndNodes(const FolderExpansion &expansion, FileBatchRequest &batch)
{
    const bool isLimited = AddingSettings::autoTagRecursionLimitSet();
    const int limit = AddingSettings::autoTagRecursionLimit();
    batch.folderTags = FolderTags(expansion.folders(), isLimited, limit);
    const QStringList names = batch.folderTags.allNames();
    batch.tagIdsByName = m_worker.createTags(names, &m_newTags);
    // The statement that failed may have ended the whole transaction: files would be added one by one then.
    if (batch.tagIdsByName.size() < names.size()) {
        qDebug("FileOperationWorker::addFilesToDB() - stopped! Exiting.");
        // A lost connection has its own word, and so has what the database refused.
        if (!m_worker.isConnectionLost() && !m_worker.report().hasErrors())
            emit m_worker.error(
                FileOperationWorker::tr("The tags for the folders could not be made, so nothing was added."),
                FileOperationWorker::tr("Error adding files"));
        return false;
    }
    if (AddingSettings::createNodes() && m_request.fromSelectedNode)
        m_newNodes = NodeBuilder(m_worker, batch.tagIdsByName, isLimited, limit)
                         .build(expansion.folders(), m_request.nodeId);
    return true;
}

bool AddFilesOperation::finish(Transaction &transaction, const QVector<qint64> &fileIds)
{
    if (!mayCommit()) {
        qDebug("FileOperationWorker::addFilesToDB() - stopped! Exiting.");
        transaction.rollBack();
        // Nothing was added, so there is nothing to report as left out either.
        m_duplicates = PresentableDuplicates();
        return false;
    }
    if (!transaction.commit()) {
        m_duplicates = PresentableDuplicates();
        return false;
    }
    if (!m_newTags.isEmpty())
        emit m_worker.updateTags(m_newTags);
    if (!m_newNodes.isEmpty())
        emit m_worker.updateNodes(m_newNodes);
    if (!fileIds.isEmpty())
        emit m_worker.updatedFiles(fileIds);
    return true;
}

#include "fileops/operations/autolinkoperation.h"

#include "app/settings/addingsettings.h"
#include "app/settings/autolinksettings.h"
#include "core/records/filekind.h"
#include "db/sql/transaction.h"
#include "fileops/adding/leftoutfiles.h"
#include "fileops/operations/storedpaths.h"
#include "fileops/pictures/thumbnailmaker.h"
#include "fileops/pictures/thumbnailsahead.h"
#include "fileops/worker/fileoperationworker.h"

#include <QDebug>

namespace {
// An edit of the window waits a quarter of a second for its lock: what a batch writes takes less.
constexpr int filesInBatch = 128;
// Fewer than ThumbnailsAhead keeps, as they are read before the lock is taken.
constexpr int picturesInBatch = 8;
constexpr int fewFiles = 50;

/** Where the batch ends that begins at `from`. */
int batchEnd(const QStringList &paths, int from)
{
    int end = from;
    int pictures = 0;
    while (end < paths.size() && end - from < filesInBatch && pictures < picturesInBatch) {
        if (ThumbnailMaker::isImageName(paths.at(end)))
            ++pictures;
        ++end;
    }
    return end;
}
} // namespace

AutoLinkOperation::AutoLinkOperation(FileOperationWorker &worker, const FileOperation &request)
    : AddOperation(worker, request, FileOperationType::AutoLinkFilesOperation)
{
    m_outcome.requestId = request.requestId;
}

void AutoLinkOperation::run()
{
    // Asked once: what is announced is ended, also when the setting changes meanwhile.
    // A few files that came by themselves are in before a window could be read.
    const bool isSmall = !m_request.notifyDuplicates && m_request.paths.size() < fewFiles;
    setSilent(isSmall || AutoLinkSettings::autoLinkInBackGround());
    if (!isSilent())
        announceFiles(true);
    const bool isToldAll = linkToFiles();
    if (!isSilent())
        emit m_worker.finishedOpration(m_type);
    // A failure cancels what is queued, too.
    m_outcome.isCanceled = isToldAll && m_worker.isCanceled();
    emit m_worker.autoLinked(m_outcome);
    if (!isToldAll)
        return;
    LeftOutFiles leftOut;
    leftOut.unreadable = m_unread;
    tellLeftOut(leftOut);
    if (m_request.notifyDuplicates)
        emit m_worker.duplicatesReady(m_duplicates);
}

bool AutoLinkOperation::linkToFiles()
{
    QHash<QString, qint64> known;
    if (!StoredPaths::read(m_worker, m_request.paths, known))
        return true;
    FileBatchRequest batch;
    batch.type = m_type;
    batch.kind = FileKind::external;
    batch.tagIds = TagLinker::sortedOnce(m_request.tagIds);
    batch.isSilent = isSilent();
    for (const QString &path : m_request.paths) {
        if (!known.contains(path))
            batch.paths.append(path);
    }
    m_outcome.known = known;
    if (AddingSettings::duplicateManagementEnabled() && !takeOutDuplicates(batch))
        return false;
    settleMissingPlaces();
    const QVector<qint64> linked = TagLinker::sortedOnce(known.values().toVector() + matchedIds());
    m_total = batch.paths.size() + linked.size();
    countDone(0);
    // Ended among the duplicates, nothing is left to add, and that is no end either.
    m_outcome.isWhole = mayCommit() && addInBatches(batch) && linkTags(linked);
    if (!m_outcome.isWhole) {
        qDebug("FileOperationWorker::autoLinkFiles() - stopped! Exiting.");
        // The rest comes with the next round, and with it what there is to tell.
        m_duplicates = PresentableDuplicates();
        return true;
    }
    noteStandIns();
    return true;
}

bool AutoLinkOperation::addInBatches(const FileBatchRequest &all)
{
    FileBatchRequest batch = all;
    int end = 0;
    for (int from = 0; from < all.paths.size(); from = end) {
        end = batchEnd(all.paths, from);
        batch.paths = all.paths.mid(from, end - from);
        batch.checksums = all.checksums.mid(from, end - from);
        batch.firstNumber = from;
        batch.wholeNumber = all.paths.size();
        // Not while the database is locked.
        if (batch.checksums.isEmpty())
            batch.checksums = FileChecksums::ofFiles(batch.paths, [this] { return m_worker.shouldEnd(); });
        batch.thumbnails = readPictures(batch.paths);
        Transaction transaction(m_worker, m_worker.connectionName());
        if (!transaction.isActive() || (batch.loadId == 0 && !m_worker.nextLoadId(batch.loadId)))
            return false;
        FileBatch files(m_worker, batch);
        QVector<qint64> added = files.addFilesListToDb();
        QStringList unread = files.unread();
        noteLeftOut(files);
        added += addOtherCopies(batch, unread);
        if (!mayCommit() || !transaction.commit())
            return false;
        m_unread += unread;
        for (const QString &path : unread + files.refused())
            m_outcome.standIns.insert(path, 0);
        countDone(added.size());
        m_outcome.addedCount += added.size();
        if (!added.isEmpty())
            emit m_worker.updatedFiles(added);
    }
    return true;
}

std::shared_ptr<ThumbnailsAhead> AutoLinkOperation::readPictures(const QStringList &paths) const
{
    auto pictures = std::make_shared<ThumbnailsAhead>(paths, [this] { return m_worker.shouldEnd(); });
    for (const QString &path : paths) {
        if (ThumbnailMaker::isImageName(path))
            pictures->pngOf(path);
    }
    return pictures;
}

bool AutoLinkOperation::linkTags(const QVector<qint64> &fileIds)
{
    for (int from = 0; from < fileIds.size(); from += filesInBatch) {
        Transaction transaction(m_worker, m_worker.connectionName());
        if (!transaction.isActive())
            return false;
        TagLinker linker(m_worker);
        int linked = 0;
        QVector<qint64> changed;
        for (const qint64 fileId : fileIds.mid(from, filesInBatch)) {
            if (!mayCommit())
                return false;
            Savepoint savepoint(m_worker);
            QVector<qint64> newTags;
            if (!savepoint.isActive() || !linker.linkFile(fileId, m_request.tagIds, &newTags) ||
                !savepoint.release())
                continue;
            ++linked;
            m_duplicates.matchedTagIds += newTags;
            if (!newTags.isEmpty())
                changed.append(fileId);
        }
        if (!mayCommit() || !transaction.commit())
            return false;
        countDone(linked);
        if (!changed.isEmpty())
            emit m_worker.updatedFiles(changed);
    }
    m_duplicates.matchedTagIds = TagLinker::sortedOnce(m_duplicates.matchedTagIds);
    return true;
}

QVector<qint64> AutoLinkOperation::matchedIds() const
{
    QVector<qint64> ids;
    for (const DuplicateMatch &match : qAsConst(m_duplicates.contentMatches)) {
        for (const DuplicateFileInfo &file : match.databaseFiles)
            ids.append(file.fileId);
    }
    return ids;
}

void AutoLinkOperation::noteStandIns()
{
    for (const QVector<DuplicateMatch> &matches : {m_duplicates.contentMatches, m_duplicates.nameMatches}) {
        for (const DuplicateMatch &match : matches) {
            for (const DuplicateFileInfo &file : match.addedFiles)
                m_outcome.standIns.insert(file.path, match.databaseFiles.value(0).fileId);
        }
    }
    QStringList keptPaths;
    for (const ExternalDuplicateGroup &group : qAsConst(m_duplicates.externalDuplicateGroups))
        keptPaths.append(group.keptFile.path);
    QHash<QString, qint64> kept;
    if (keptPaths.isEmpty() || !StoredPaths::read(m_worker, keptPaths, kept))
        return;
    for (const ExternalDuplicateGroup &group : qAsConst(m_duplicates.externalDuplicateGroups)) {
        for (const DuplicateFileInfo &file : group.ignoredFiles)
            m_outcome.standIns.insert(file.path, kept.value(group.keptFile.path));
    }
}

void AutoLinkOperation::countDone(int files)
{
    m_done += files;
    m_worker.report().setDone(m_done, m_total);
}

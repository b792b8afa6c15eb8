#include "fileops/operations/addoperation.h"

#include "app/settings/addingsettings.h"
#include "db/sql/transaction.h"
#include "fileops/adding/leftoutfiles.h"
#include "fileops/duplicates/duplicatemanager.h"
#include "fileops/tracking/missingplaces.h"
#include "fileops/worker/fileoperationworker.h"

#include <QSet>

#include <algorithm>

bool AddOperation::takeOutDuplicates(FileBatchRequest &batch)
{
    DuplicateManager manager;
    if (!m_isSilent)
        QObject::connect(&manager, &DuplicateManager::operationProgress, &m_worker,
                         &FileOperationWorker::operationProgress);
    const QStringList paths = batch.paths;
    QStringList kept;
    if (!manager.addFilesToDB(paths, AddingSettings::checkForNameDuplicates(), m_worker, batch.paths, kept,
                              batch.folderTags, batch.inheritedTags)) {
        m_worker.report().setOutcome(
            FileOperationWorker::tr("A database-related duplicate management error occurred "
                                    "while preparing to add files"));
        m_worker.cancelAll();
        return false;
    }
    if (!manager.silentPath().isEmpty()) {
        tellSilence(manager.silentPath());
        return false;
    }
    batch.checksums = manager.checksums();
    m_duplicates = manager.presentableDuplicates();
    return true;
}

QVector<qint64> AddOperation::linkMatchedFiles(const FileBatchRequest &batch)
{
    QVector<qint64> linked;
    QSet<qint64> usedTags;
    TagLinker linker(m_worker);
    for (const DuplicateMatch &match : qAsConst(m_duplicates.contentMatches)) {
        QStringList names;
        for (const DuplicateFileInfo &added : match.addedFiles)
            names.append(added.tagNames);
        const QVector<qint64> tagIds = TagLinker::idsFor(names, batch.tagIdsByName, batch.tagIds);
        for (const DuplicateFileInfo &file : match.databaseFiles) {
            if (!mayCommit())
                return linked;
            Savepoint savepoint(m_worker);
            QVector<qint64> newTags;
            if (!savepoint.isActive() || !linker.linkFile(file.fileId, tagIds, &newTags) ||
                !savepoint.release())
                continue;
            linked.append(file.fileId);
            for (const qint64 tagId : qAsConst(newTags)) {
                usedTags.insert(tagId);
                m_matchedTags[tagId].append(file.fileId);
            }
        }
    }
    m_duplicates.matchedTagIds = TagLinker::sortedOnce(usedTags.values().toVector());
    return linked;
}

QVector<qint64> AddOperation::fillMissingPlaces()
{
    return MissingPlaces(m_worker).fill(m_duplicates.contentMatches);
}

void AddOperation::settleMissingPlaces()
{
    if (m_duplicates.contentMatches.isEmpty())
        return;
    Transaction transaction(m_worker, m_worker.connectionName());
    const QVector<qint64> found = transaction.isActive() ? fillMissingPlaces() : QVector<qint64>();
    if (found.isEmpty() || !mayCommit() || !transaction.commit()) {
        // The report says what is, not what was tried.
        for (DuplicateMatch &match : m_duplicates.contentMatches)
            match.fillsMissingPlace = false;
        return;
    }
    emit m_worker.updatedFiles(found);
    emit m_worker.present(found);
}

void AddOperation::noteLeftOut(const FileBatch &batch)
{
    const QStringList paths = batch.unread() + batch.refused();
    const QSet<QString> leftOut(paths.cbegin(), paths.cend());
    if (leftOut.isEmpty())
        return;
    for (ExternalDuplicateGroup &group : m_duplicates.externalDuplicateGroups) {
        if (leftOut.contains(group.keptFile.path))
            group.outcome = ExternalDuplicateGroup::LeftOut;
    }
}

QVector<qint64> AddOperation::addOtherCopies(const FileBatchRequest &all, QStringList &unread)
{
    QVector<qint64> added;
    FileBatchRequest batch = all;
    while (mayCommit()) {
        batch.paths.clear();
        batch.checksums.clear();
        for (ExternalDuplicateGroup &group : m_duplicates.externalDuplicateGroups) {
            if (group.outcome != ExternalDuplicateGroup::LeftOut || group.ignoredFiles.isEmpty())
                continue;
            const QString failed = group.keptFile.path;
            group.keptFile = group.ignoredFiles.takeFirst();
            group.outcome = ExternalDuplicateGroup::Added;
            batch.paths.append(group.keptFile.path);
            // What all copies bring from their folders stays with the one that is added.
            if (batch.inheritedTags.contains(failed))
                batch.inheritedTags.insert(group.keptFile.path, batch.inheritedTags.value(failed));
        }
        if (batch.paths.isEmpty())
            break;
        FileBatch files(m_worker, batch);
        added += files.addFilesListToDb();
        unread += files.unread();
        noteLeftOut(files);
    }
    QVector<ExternalDuplicateGroup> &groups = m_duplicates.externalDuplicateGroups;
    const auto isSingle = [](const ExternalDuplicateGroup &group) { return group.ignoredFiles.isEmpty(); };
    groups.erase(std::remove_if(groups.begin(), groups.end(), isSingle), groups.end());
    return added;
}

void AddOperation::tellSilence(const QString &path)
{
    // What comes by itself is tried again by itself.
    if (m_type == FileOperationType::AutoLinkFilesOperation && !m_request.notifyDuplicates)
        return;
    emit m_worker.error(
        FileOperationWorker::tr("The disk with \"%1\" does not answer, so nothing was added.").arg(path),
        FileOperationWorker::tr("Error adding files"));
}

void AddOperation::tellLeftOut(const LeftOutFiles &leftOut)
{
    const QString text = leftOut.text();
    if (!text.isEmpty())
        emit m_worker.error(text, FileOperationWorker::tr("Files left out"));
}

void AddOperation::tellAdded(int files, const QVector<qint64> &nodes)
{
    AdditionOutcome outcome;
    outcome.added = files;
    outcome.nodes = nodes;
    for (const DuplicateMatch &match : qAsConst(m_duplicates.contentMatches))
        outcome.alreadyThere += match.addedFiles.size();
    for (auto tag = m_matchedTags.begin(); tag != m_matchedTags.end(); ++tag)
        outcome.matchedTags.append({tag.key(), TagLinker::sortedOnce(*tag), {}});
    emit m_worker.added(outcome);
}

bool AddOperation::mayCommit() const
{
    return !m_worker.shouldEnd() && !m_worker.isSavepointLost();
}

void AddOperation::announceFiles(bool isLinking)
{
    emit m_worker.startedOpration(m_type, isLinking
                                              ? FileOperationWorker::tr("Linking to files...")
                                              : FileOperationWorker::tr("Copying files into database..."));
}

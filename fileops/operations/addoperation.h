#pragma once

#include "fileops/adding/filebatch.h"
#include "fileops/worker/fileoperation.h"
#include "fileops/worker/presentableduplicates.h"

#include <QMap>

class FileOperationWorker;
struct LeftOutFiles;

/** What the operations that add have in common. Lives on the stack of the worker's thread for one run. */
class AddOperation
{
protected:
    AddOperation(FileOperationWorker &worker, const FileOperation &request, FileOperationType type)
        : m_worker(worker), m_request(request), m_type(type)
    {
    }
    ~AddOperation() = default;

    /** Takes out of the batch what is not to be added; after a failure all that is queued is cancelled. */
    bool takeOutDuplicates(FileBatchRequest &batch);
    /**
     * Links the request's tags and those of their folders to the files of the database that dropped ones have
     * met in content. The files that worked.
     */
    QVector<qint64> linkMatchedFiles(const FileBatchRequest &batch);
    /** Lets the first file of each match take the place of a missing one. The files that were found so. */
    QVector<qint64> fillMissingPlaces();
    /** The same in a transaction of its own, and told of. */
    void settleMissingPlaces();
    /** Corrects what the report says of files that stand for others but were left out themselves. */
    void noteLeftOut(const FileBatch &batch);
    /** Adds another one of the same contents for each file that noteLeftOut() noted. */
    QVector<qint64> addOtherCopies(const FileBatchRequest &all, QStringList &unread);
    /** Tells that nothing was added, as a file could not be looked at. */
    void tellSilence(const QString &path);
    /** Tells of files that were left out, once the others are in. */
    void tellLeftOut(const LeftOutFiles &leftOut);
    /** Neither stopped nor cancelled, and the transaction is what it should be. */
    bool mayCommit() const;
    /** Tells what has been stored. */
    void tellAdded(int files, const QVector<qint64> &nodes = {});
    /** From here on no progress is told. */
    void setSilent(bool isSilent) { m_isSilent = isSilent; }
    bool isSilent() const { return m_isSilent; }
    /** The title and progress of adding files, by the setting of the window. */
    void announceFiles(bool isLinking);

    FileOperationWorker &m_worker;
    const FileOperation &m_request;
    const FileOperationType m_type;
    PresentableDuplicates m_duplicates;

private:
    bool m_isSilent = false;
    QMap<qint64, QVector<qint64>> m_matchedTags; ///< files that got a tag, as they had its contents
};

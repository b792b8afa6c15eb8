#pragma once

#include "db/undo/changereplay.h"
#include "fileops/worker/fileoperation.h"
#include "fileops/worker/progressthrottle.h"
#include "fileops/worker/replayoutcome.h"

class FileOperationWorker;

/**
 * Writes changes of whole rows and of the tags of many files: those that take a step back or do it again, or
 * those that make one tag of several, which it finds out itself. All or nothing: a failure or a cancel leaves
 * everything as it was. The answer tells what was touched.
 */
class ReplayOperation
{
public:
    ReplayOperation(FileOperationWorker &worker, const FileOperation &request);

    void run();

private:
    bool findMerge();
    bool write();
    bool changeTags(const TagChanges &changes, QSet<qint64> &lost);
    bool findLost(const TagChanges &changes, const TagChanges &done, QSet<qint64> &lost);
    bool readUsed(const QVector<qint64> &tagIds, QSet<qint64> &used);
    bool readIds(const QString &statement, QSet<qint64> &ids);
    /** False to end it. */
    bool goOn(qint64 done);

    FileOperationWorker &m_worker;
    const FileOperation &m_request;
    QVector<ChangeSet> m_changes;
    ReplayOutcome m_outcome;
    ProgressThrottle m_progress;
    qint64 m_pairs = 0; ///< all of them, and those that are written
    qint64 m_written = 0;
};

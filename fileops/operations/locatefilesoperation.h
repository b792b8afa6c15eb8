#pragma once

#include "fileops/worker/fileoperation.h"
#include "fileops/worker/progressthrottle.h"

#include <QHash>
#include <QVector>

class FileOperationWorker;

/**
 * Gives external files new places: paths and name go into their records, some hundred files in a transaction
 * and each by itself. A file that is another one by now, or whose new place is empty, is left out; a cancel
 * keeps what was written. What is found in the new places is looked at by a check that follows.
 */
class LocateFilesOperation
{
public:
    LocateFilesOperation(FileOperationWorker &worker, const FileOperation &request);

    void run();

private:
    void readOwners();
    /**
     * Writes a slice again and again while others hold the database or have just written to it: somebody may
     * have chosen each file by hand. A cancel ends it.
     */
    bool outwaitLock(int first, int last);
    /** False when what follows would fail, too. */
    bool writeSlice(int first, int last);
    bool writeFile(int index);
    void reportProgress(int index);

    FileOperationWorker &m_worker;
    const FileOperation &m_request;
    ProgressThrottle m_progress;
    QHash<QString, qint64> m_owners; ///< the files that have one of the new places
    QVector<qint64> m_located;
};

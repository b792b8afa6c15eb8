#pragma once

#include "fileops/contents/contentwriter.h"
#include "fileops/worker/fileoperation.h"
#include "fileops/worker/progressthrottle.h"

#include <QStringList>

class FileOperationWorker;

/**
 * Makes external files internal: copies their contents into the database and drops their paths, each file in
 * a transaction of its own. What lies on disk stays as it is. A file that cannot be read stays external; a
 * cancel keeps the files that are through. Lives on the stack of the worker's thread for one run.
 */
class TransferFilesOperation
{
public:
    TransferFilesOperation(FileOperationWorker &worker, const FileOperation &request);

    void run();

private:
    /** An external file as the database has it. */
    struct Source
    {
        qint64 fileId = 0;
        QString idCode; ///< empty where any will do
        qint64 pathId = 0;
        QString path;
        qint64 size = 0; ///< on the disk before the transfer
    };

    QVector<Source> findSources();
    /** Finds path and path id; false for what is no external file. */
    bool readRows(Source &source);
    ContentWriter::Outcome transfer(Source &source);
    bool changeRows(const Source &source, qint64 storageId, const StoredContents &stored);
    void reportProgress(const Source &source, qint64 storedBytes);
    void reportUnread();

    FileOperationWorker &m_worker;
    const FileOperation &m_request;
    ContentWriter m_writer;
    ProgressThrottle m_progress;
    qint64 m_totalBytes = 0;
    qint64 m_doneBytes = 0; ///< of the files before the running one
    QStringList m_unread;
};

#pragma once

#include "fileops/tracking/modifiedfile.h"

#include <QByteArray>
#include <QHash>

class FileOperationWorker;

/**
 * Writes what changed files are now into their records, and lets files that stay inherit from records that
 * go. Contents and pictures are read before anything is written. Worker's thread.
 */
class FileRefresh
{
public:
    explicit FileRefresh(FileOperationWorker &worker) : m_worker(worker) {}

    /** Makes the thumbnails of those that are still there, outside of any transaction. */
    void prepare(const ModifiedFileList &files);
    /** The files whose records were written, in one transaction: one that fails leaves the others alone. */
    QVector<qint64> write();
    /**
     * The tags of a file that goes, and its description where there is none, go to the one that stays: within
     * the transaction in which the other one goes. False when that one is not there any more, either.
     */
    bool bequeath(qint64 gone, qint64 kept);

private:
    bool writeFile(const ModifiedFile &file);

    FileOperationWorker &m_worker;
    ModifiedFileList m_files;
    QHash<qint64, QByteArray> m_thumbnails;
};

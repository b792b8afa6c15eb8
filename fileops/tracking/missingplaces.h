#pragma once

#include "fileops/worker/presentableduplicates.h"

class FileOperationWorker;

/**
 * Lets files that are being added take the places of missing ones: an added file with the contents of an
 * external file that is not where its record says is most likely that file, moved. The record keeps its tags
 * and gets the new path. Worker's thread, in the transaction of the add.
 */
class MissingPlaces
{
public:
    explicit MissingPlaces(FileOperationWorker &worker) : m_worker(worker) {}

    /** The files whose records lead to an added file now; their matches say so. */
    QVector<qint64> fill(QVector<DuplicateMatch> &contentMatches);

private:
    bool fillOne(DuplicateMatch &match, qint64 &fileId);
    bool isMissing(const DuplicateFileInfo &file);
    /** Of a disk that does not answer nothing is known to be absent. */
    bool isAbsent(const QString &path) const;
    bool moveRecord(qint64 fileId, const DuplicateFileInfo &added);

    FileOperationWorker &m_worker;
};

#pragma once

#include "fileops/worker/presentableduplicates.h"

#include <QSet>

class FileOperationWorker;

/**
 * Lets files that are being added take the places of missing ones: an added file with the contents of an
 * external file that is not where its record says is most likely that file, moved. What is recorded of
 * contents may fit other ones, too, and there are none to compare with: the name or the time of the last
 * change has to fit, or no other file may have the size. The record keeps its tags and gets the new path.
 * Worker's thread, in the transaction of the add.
 */
class MissingPlaces
{
public:
    explicit MissingPlaces(FileOperationWorker &worker) : m_worker(worker) {}

    /** The files whose records lead to an added file now; their matches say so. */
    QVector<qint64> fill(QVector<DuplicateMatch> &contentMatches);

private:
    bool readCrowdedSizes(const QVector<DuplicateMatch> &contentMatches);
    bool isCertain(const DuplicateFileInfo &missing, const DuplicateFileInfo &added) const;
    bool fillOne(DuplicateMatch &match, qint64 &fileId);
    bool isMissing(const DuplicateFileInfo &file);
    /** Of a disk that does not answer nothing is known to be absent. */
    bool isAbsent(const QString &path) const;
    bool moveRecord(qint64 fileId, const DuplicateFileInfo &added);

    FileOperationWorker &m_worker;
    QSet<qint64> m_crowdedSizes; ///< of several files
};

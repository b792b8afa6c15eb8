#pragma once

#include "fileops/contents/databasefiles.h"
#include "fileops/tracking/modifiedfile.h"

#include <QHash>

class FileOperationWorker;

/**
 * Finds changed files that have become copies of other files in the database. An equal checksum only
 * nominates: size and bytes decide, and what cannot be read is no copy. Neither the row of the file itself
 * nor another one of its path counts, and of two changed files that are equal both stay, whether they are met
 * together or one after the other. Empty files are no copies. Worker's thread.
 */
class ChangedCopies
{
public:
    explicit ChangedCopies(FileOperationWorker &worker) : m_worker(worker) {}

    /** The file that stays for each one that is a copy of it. False when a query failed, and on a stop. */
    bool find(const ModifiedFileList &files, QHash<qint64, qint64> &keptFiles);

private:
    bool isCopy(const ModifiedFile &file, const DatabaseFile &other) const;

    FileOperationWorker &m_worker;
};

#pragma once

#include "fileops/tracking/modifiedfile.h"

#include <QMap>

class FileOperationWorker;

/** Reads changed files: their rows and their contents. Worker's thread. */
class ModifiedFileReader
{
public:
    explicit ModifiedFileReader(FileOperationWorker &worker) : m_worker(worker) {}

    /**
     * Moves files out of `paths`, ids to paths, into the result: some thousands, or fewer when others wait
     * for the worker. One that is gone, cannot be read, or is being written to is left out: a later check
     * comes to it. False when their rows could not be read, and on a stop.
     */
    bool read(QMap<qint64, QString> &paths, ModifiedFileList &files);

private:
    bool readRows(QMap<qint64, QString> &paths, ModifiedFileList &files);
    /** Those of the first files that are read together: many small ones, or a large one. */
    ModifiedFileList groupFrom(const ModifiedFileList &files) const;
    /** False when it was put off, as others wait. */
    bool readContents(const ModifiedFileList &group, ModifiedFileList &read);

    FileOperationWorker &m_worker;
};

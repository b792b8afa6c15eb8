#pragma once

#include "fileops/importing/chunkrows.h"

#include <QCoreApplication>
#include <QString>

class CriticalDMError;
class ImportRun;

/**
 * Adds the files of the source that are new. They go in chunks, set by set, each under a savepoint; a chunk
 * that fails is halved until the file that fails stands alone, so that what remains is what a savepoint a
 * file would leave. A file of several blocks is a chunk by itself.
 */
class FileImporter
{
    Q_DECLARE_TR_FUNCTIONS(FileImporter)

public:
    FileImporter(ImportRun &run, bool takesDescriptions);

    void copyFiles();

private:
    void copyRange(qint64 first, qint64 last);
    /** False when it failed and left nothing behind. */
    bool copyChunk();
    /** With these bytes of a file that is being copied. */
    void reportProgress(qint64 bytes = 0);
    /** Of what fails for one file the others know nothing, a full disk fails them all. */
    bool isFatal(const CriticalDMError &failure) const;

    ImportRun &m_run;
    ChunkRows m_rows;
    double m_total = 0; ///< of bytes, and of some for each file
    double m_done = 0;  ///< the same; a source may record more than there is
    QString m_whyNot;   ///< of the chunk that failed last
};

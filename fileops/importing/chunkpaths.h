#pragma once

#include "db/sql/sqltextfunction.h"
#include "fileops/contents/externalpaths.h"

class ImportRun;

/** The paths of the external files in `mem_chunk`, on their way into the open database. */
class ChunkPaths
{
public:
    explicit ChunkPaths(ImportRun &run);

    /** The number of paths: less than that of the files when some have none, or one that is too long. */
    int insert(qint64 idsBefore);

private:
    /** As seen from the open database. Files of one folder mostly follow each other. */
    QByteArray relative(const QByteArray &path);

    ImportRun &m_run;
    const Database::PathLocator m_locator;
    QByteArray m_folder; ///< with its last slash
    QByteArray m_relativeFolder;
    const SqlTextFunction m_function;
};

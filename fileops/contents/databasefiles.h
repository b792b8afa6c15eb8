#pragma once

#include "fileops/worker/presentableduplicates.h"

#include <QHash>
#include <QVector>

class FileOperationQueries;

/** What duplicate management needs to know of a file in the database. */
struct DatabaseFile
{
    qint64 fileId = 0;
    QString name;
    QString path; ///< external files only
    qint64 size = 0;
    qint64 modified = 0; ///< seconds since 1970
    int internal = 0;
    qint64 storageId = 0;

    /** For a report: the path of an external file, else the name. */
    DuplicateFileInfo info() const;
};

/** Reads the files of these ids by id; false when a statement failed. Worker's thread. */
bool readDatabaseFiles(FileOperationQueries &queries, const QVector<qint64> &ids,
                       QHash<qint64, DatabaseFile> &files);

#pragma once

#include <QString>
#include <QVector>

/** What is to go out of a database, and as what. */
struct ExportRequest
{
    /** The numbers stand in queued records. */
    enum Form : int {
        Database = 0,
        Shell = 1, ///< a database without contents, for those who have the files
        Csv = 2
    };

    QString path;
    QVector<qint64> fileIds;
    QVector<qint64> tagIds;
    bool exportDescriptions = true;
    bool addAllTagsOfFiles = false; ///< else only links to the tags named go over
    bool exportTagGroups = true;
    bool exportTagRelationships = true;
    int form = Database;
};

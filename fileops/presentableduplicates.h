#pragma once

#include <QDateTime>
#include <QList>
#include <QMetaType>
#include <QString>
#include <QStringList>

/** One file or hyperlink of a duplicate report. */
struct DuplicateFileInfo
{
    qint64 fileId = 0;    ///< 0 for a file that is not in the database
    QStringList tagNames; ///< tags that the file brings from its folders
    QString path;         ///< absolute path or hyperlink text
    qint64 size = 0;
    QDateTime lastModified;
};

/** Files of a batch that meet files of the database, or each other, in content or in name. */
struct DuplicateMatch
{
    QList<DuplicateFileInfo> databaseFiles; ///< may be empty
    QList<DuplicateFileInfo> addedFiles;    ///< the paths of the batch
};

/** Files of a batch with equal content, none of them in the database before. */
struct ExternalDuplicateGroup
{
    DuplicateFileInfo keptFile; ///< the one that was added
    QList<DuplicateFileInfo> ignoredFiles;
};

/** What duplicate management found in one batch. A plain value that crosses threads. */
struct PresentableDuplicates
{
    QList<DuplicateMatch> contentMatches;
    QList<DuplicateMatch> nameMatches;
    QList<ExternalDuplicateGroup> externalDuplicateGroups;
};
Q_DECLARE_METATYPE(PresentableDuplicates)

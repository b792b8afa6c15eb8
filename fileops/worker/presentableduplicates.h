#pragma once

#include <QDateTime>
#include <QMetaType>
#include <QString>
#include <QStringList>
#include <QVector>

/** One file or hyperlink of a duplicate report. */
struct DuplicateFileInfo
{
    qint64 fileId = 0;    ///< 0 for a file that is not in the database
    QStringList tagNames; ///< tags that the file brings from its folders
    QString path;         ///< absolute path or hyperlink text
    qint64 size = 0;
    QDateTime lastModified; ///< invalid for a hyperlink of the batch, which has neither date nor size

    bool isFile() const { return lastModified.isValid(); }
};
Q_DECLARE_TYPEINFO(DuplicateFileInfo, Q_MOVABLE_TYPE);

/** Files of a batch that meet files of the database, or each other, in content or in name. */
struct DuplicateMatch
{
    QVector<DuplicateFileInfo> databaseFiles; ///< may be empty
    QVector<DuplicateFileInfo> addedFiles;    ///< the paths of the batch
    bool fillsMissingPlace = false;           ///< a record that led nowhere leads to the first of them now
};
Q_DECLARE_TYPEINFO(DuplicateMatch, Q_MOVABLE_TYPE);

/** Files of a batch with equal content, none of them in the database before. */
struct ExternalDuplicateGroup
{
    /** What became of the kept file. */
    enum Outcome {
        Added,
        SharesName, ///< it stands in `nameMatches`, too
        LeftOut     ///< it could not be read any more, or the database refused it
    };

    DuplicateFileInfo keptFile; ///< the one that stands for all
    Outcome outcome = Added;
    QVector<DuplicateFileInfo> ignoredFiles;
};
Q_DECLARE_TYPEINFO(ExternalDuplicateGroup, Q_MOVABLE_TYPE);

/**
 * What duplicate management found in one batch. A plain value that crosses threads; there may be a million
 * matches, so its lists are packed and shared, never copied.
 */
struct PresentableDuplicates
{
    QVector<DuplicateMatch> contentMatches;
    QVector<DuplicateMatch> nameMatches;
    QVector<ExternalDuplicateGroup> externalDuplicateGroups;
    QVector<qint64> matchedTagIds; ///< ascending; what content matches gave to files of the database

    bool isEmpty() const
    {
        return contentMatches.isEmpty() && nameMatches.isEmpty() && externalDuplicateGroups.isEmpty();
    }
};
Q_DECLARE_METATYPE(PresentableDuplicates)

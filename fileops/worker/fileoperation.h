#pragma once

#include "core/tagging/tagchange.h"
#include "db/undo/changeset.h"
#include "fileops/worker/exportrequest.h"
#include "fileops/worker/importoptions.h"

#include <QFileInfo>
#include <QHash>
#include <QMap>
#include <QMetaType>
#include <QPair>
#include <QSet>
#include <QString>
#include <QStringList>
#include <QVector>

#include <memory>

class PartFile;

/** What a queued record asks for. The numbers cross threads and are what the worker switches on. */
enum class FileOperationType {
    AddFilesOperation = 0,
    AddHyperlinksOperation = 1,
    AddFileListOperation = 2,
    UnusedOperation = 3, ///< passes through the queue without any effect
    DeleteFilesOperation = 4,
    LoadThumbnailsOperation = 5,
    ExtractFilesOperation = 6,
    ExtractToTemporaryOperation = 7,
    CheckExternalFilesOperation = 8,
    AutoLinkFilesOperation = 9,
    ExportOperation = 10,
    ImportOperation = 11,
    RemakeThumbnailsOperation = 12,
    TransferFilesOperation = 13,
    LocateFilesOperation = 14,
    ChangeTagsOperation = 15,
    ReplayOperation = 16
};
Q_DECLARE_METATYPE(FileOperationType)

/** One request to the worker, by value. A field that the type does not use stays empty. */
struct FileOperation
{
    FileOperationType type = FileOperationType::UnusedOperation;
    QStringList paths; ///< files, folders or hyperlinks to add; targets of an extraction; new places
    QSet<QString> replacedPaths;   ///< targets where another file gives way
    QSet<QString> comparedPaths;   ///< targets where the file itself seems to stand already
    QVector<qint64> fileIds;       ///< the files that the operation concerns
    QStringList idCodes;           ///< theirs, as an id may be another file's by now; empty where nobody asks
    QVector<qint64> tagIds;        ///< tags for the added files
    TagChanges tagChanges;         ///< of files that there are
    QVector<ChangeSet> changes;    ///< to be written one after the other
    qint64 mergeTarget = 0;        ///< in place of these: the tag that tagIds go to
    bool fromSelectedNode = false; ///< the add may make browsing nodes
    qint64 nodeId = 0;             ///< the node under which new nodes go
    QPair<qint64, qint64> fileToExtract{-1, -1};

    ExportRequest exportRequest;
    /** Beside the path of the request; it goes with the last record that knows it. */
    std::shared_ptr<PartFile> exportTarget;

    QFileInfo importSource;
    bool importsShell = false; ///< metadata only, of files that both sides have
    ImportOptions importOptions;

    bool givesWay = false;    ///< a check: a later one that does, too, takes its place
    bool marksOnly = false;   ///< a check that writes nothing
    bool onlyMissing = false; ///< a deletion that spares files that are in their places again
    /** Paths of what a check has found changed by ids; shared by its parts, as there may be a million. */
    std::shared_ptr<QMap<qint64, QString>> modifiedFiles;

    bool notifyDuplicates = false;            ///< automatic adds only
    qint64 requestId = 0;                     ///< of those, for who asked
    QHash<QString, QString> hyperlinkDetails; ///< column of `files` to value, for added hyperlinks
};
Q_DECLARE_METATYPE(FileOperation)

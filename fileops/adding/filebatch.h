#pragma once

#include "core/records/filekind.h"
#include "fileops/adding/fileadder.h"
#include "fileops/adding/foldertags.h"
#include "fileops/adding/taglinker.h"
#include "fileops/worker/fileoperation.h"
#include "fileops/worker/progressthrottle.h"

#include <QHash>
#include <QStringList>
#include <QVector>

#include <memory>

class FileOperationWorker;
class Savepoint;
class ThumbnailsAhead;

/** What a batch adds, and the tags that it links. The checksums, when given, stand beside the paths. */
struct FileBatchRequest
{
    QStringList paths;
    QVector<FileChecksum> checksums;  ///< of earlier readings; empty when there were none
    qint32 kind = FileKind::external; ///< where their contents go
    FileOperationType type = FileOperationType::AddFilesOperation; ///< for the progress
    QVector<qint64> tagIds;                                        ///< for every file
    FolderTags folderTags;
    QHash<QString, qint64> tagIdsByName;
    QHash<QString, QStringList> inheritedTags; ///< path to names, in place of those of its folder
    qint64 loadId = 0;                         ///< 0 for one of its own
    bool isSilent = false;                     ///< no progress
    /** Pictures that were read before the transaction began; null when none were. */
    std::shared_ptr<ThumbnailsAhead> thumbnails;
    // A part of a longer list, for its progress.
    int firstNumber = 0;
    int wholeNumber = 0; ///< 0 for the paths here
};

/**
 * The inner loop of adding, within the running transaction of the worker and on its thread. A file that fails
 * leaves nothing behind and does not hinder the others.
 *
 * Files go in runs under one savepoint, as each savepoint has all pages copied that change under it, those at
 * random places of an index among them; on a server, where each statement takes its time to get there, the
 * rows of a run go together. A run in which one fails is rolled back and repeated file by file, so that what
 * remains is what a savepoint a file would leave.
 */
class FileBatch
{
public:
    FileBatch(FileOperationWorker &worker, const FileBatchRequest &request);

    /** The ids of the added files, in the order of their paths; on a stop or cancel of those so far. */
    QVector<qint64> addFilesListToDb();
    /** The files that were left out because they could not be read. */
    QStringList unread() const { return m_unread; }
    /** The files that the database refused, which has told why. */
    QStringList refused() const { return m_refused; }

private:
    /** Behind the last file of the run that begins here. */
    int endOfRun(int from) const;
    /** Roughly the bytes of what is written of a file. */
    qint64 weightOf(int index) const;
    bool addRun(int from, int to);
    bool gatherRun(int from, int to);
    bool addSingly(int from, int to);
    FileAdder::Outcome addFile(int index, qint64 &fileId);
    QVector<qint64> tagIdsFor(const QString &path);
    bool mayGoOn() const;
    void reportProgress(int index);

    FileOperationWorker &m_worker;
    FileBatchRequest m_request;
    FileAdder *m_adder = nullptr; ///< while the loop runs
    TagLinker m_linker;
    ProgressThrottle m_progress;
    QVector<qint64> m_added;
    QStringList m_unread;
    QStringList m_refused;
    QStringList m_lastNames;
    QVector<qint64> m_lastTagIds;
    bool m_hasLast = false;
};

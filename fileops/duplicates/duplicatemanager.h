#pragma once

#include "fileops/adding/foldertags.h"
#include "fileops/contents/databasefiles.h"
#include "fileops/contents/filechecksums.h"
#include "fileops/worker/fileoperation.h"
#include "fileops/worker/presentableduplicates.h"
#include "fileops/worker/progressthrottle.h"

#include <QHash>
#include <QObject>
#include <QStringList>
#include <QVector>

class FileOperationWorker;

/**
 * Decides which of the paths that are to be added are new, which are copies of each other or of files in the
 * database, and which share a name. An equal checksum only nominates: size and bytes decide, texts between
 * hyperlinks, and the checksum where a side cannot be read. Made for one run on the worker's thread.
 */
class DuplicateManager : public QObject
{
    Q_OBJECT

public:
    explicit DuplicateManager(QObject *parent = nullptr);

    /**
     * Fills `outList` with what is to be added and `keptList` with those of it that stand for copies, both in
     * the order of `paths`, and `inheritedTags` with the tag names that a kept path takes over from its
     * copies. False only when a query failed; a stop or cancel answers true.
     */
    bool addFilesToDB(const QStringList &paths, bool checkNames, FileOperationWorker &worker,
                      QStringList &outList, QStringList &keptList, const FolderTags &folderTags,
                      QHash<QString, QStringList> &inheritedTags);

    PresentableDuplicates presentableDuplicates() const { return m_duplicates; }
    /** What the run read of the files in `outList`, in its order. */
    QVector<FileChecksum> checksums() const;
    /** The file at which reading was given up, as its disk does not answer; empty when there was none. */
    QString silentPath() const { return m_silentPath; }

signals:
    void operationProgress(FileOperationType type, QString text, int percent);

private:
    struct Candidate
    {
        QString path;
        FileChecksum checksum;
        bool isHyperlink = false;
        bool isAdded = true; ///< false once something else stands for it
        int group = -1;      ///< the duplicates' number of the group that it stands for

        bool hasChecksum() const { return isHyperlink || checksum.isRead; }
    };
    /** Candidates of equal content, as indices in their order. */
    struct Content
    {
        QVector<int> members;
        QVector<qint64> databaseFiles;
    };

    bool readPaths(const QStringList &paths);
    void tellReading(int number, int all);
    void appendCandidate(const QString &path, const FileChecksum &checksum);
    bool groupByContent();
    void splitGroup(const QVector<int> &sameChecksum);
    bool findInDatabase();
    bool matchContents(const QHash<qint64, QVector<qint64>> &idsByChecksum);
    bool isSameContent(const Candidate &candidate, const DatabaseFile &file);
    void settleContents(const FolderTags &folderTags, QHash<QString, QStringList> &inheritedTags);
    void keepOne(const Content &content, const FolderTags &folderTags,
                 QHash<QString, QStringList> &inheritedTags);

    bool takeOutNameMatches(const FolderTags &folderTags);
    bool idsByName(const QStringList &names, QHash<QString, QVector<qint64>> &ids);

    DuplicateFileInfo info(int index, const FolderTags &folderTags) const;
    QVector<DuplicateFileInfo> databaseInfos(QVector<qint64> ids) const;
    bool hasEnded() const;
    void reportExamining(int number, int percent, bool isLast = false);

    FileOperationWorker *m_worker = nullptr;
    QVector<Candidate> m_candidates;
    QVector<int> m_byChecksum;   ///< candidates that have a checksum, by it and then in their order
    QVector<Content> m_contents; ///< those of several members or with files of their checksum in the database
    QHash<qint64, DatabaseFile> m_databaseFiles;
    PresentableDuplicates m_duplicates;
    ProgressThrottle m_progress;
    QString m_silentPath;
};

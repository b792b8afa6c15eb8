#pragma once

#include "app/settings/dbdetails.h"
#include "db/sql/basedbprovider.h"
#include "fileops/files/shellfile.h"
#include "fileops/worker/additionoutcome.h"
#include "fileops/worker/autolinkoutcome.h"
#include "fileops/worker/deletedfilerepresentations.h"
#include "fileops/worker/fileoperation.h"
#include "fileops/worker/operationshortfall.h"
#include "fileops/worker/presentableduplicates.h"
#include "fileops/worker/replayoutcome.h"

#include <QDateTime>
#include <QImage>
#include <QPair>

class FileOperationWorker;
class QThread;

/**
 * The front of file operations on the main thread: it turns requests into queued records, owns the worker and
 * its thread, and hands the worker's news on. Requests return at once; the thread runs only while there is
 * work. Destroying the provider ends a running operation and waits for it.
 */
class FileOperationProvider : public BaseDBProvider
{
    Q_OBJECT

public:
    /** The details are those of the worker's own connection. */
    FileOperationProvider(const AbstractQueryConstructor *constructor, const DBDetails &details,
                          QObject *parent = nullptr);
    ~FileOperationProvider() override;

    /** Makes the worker and its thread; the first request does it otherwise. */
    void start();

    /** Adds files as they stand: no folders, no duplicate check, no tags. Nothing for an empty list. */
    void addFilesList(const QStringList &paths);
    /** Existing paths are added as files, all other texts as hyperlinks after them. */
    void addFiles(const QStringList &paths, const QVector<qint64> &tagIds, bool fromSelectedNode,
                  qint64 nodeId, const QHash<QString, QString> &hyperlinkDetails = {});
    /**
     * Adds what a linked folder holds as external files with these tags. Paths that are known get the tags.
     * What was left out is reported when `notifyDuplicates` says so; autoLinked() has the request's number.
     */
    void autoLinkFiles(const QStringList &paths, const QVector<qint64> &tagIds, bool notifyDuplicates,
                       qint64 requestId = 0);
    /** A file whose code is not the given one any more is another file, and left out. */
    void deleteFiles(const QVector<qint64> &ids, const QStringList &idCodes = {}, bool onlyMissing = false);
    /** Copies the contents of external files into the database, which then holds them. */
    void transferFiles(const QVector<qint64> &ids, const QStringList &idCodes = {});
    void loadThumbnails(const QVector<qint64> &ids);
    /** Takes back one request for a thumbnail; nothing when it is being loaded already. */
    void forgetThumbnail(qint64 id);
    /**
     * Copies each file to its target path. Only at the replaced paths a file gives way to another one; at the
     * compared ones a file is left out when it stands there already, and else gets a new name.
     */
    void extractFiles(const QVector<qint64> &ids, const QStringList &targetPaths,
                      const QSet<QString> &replacedPaths = {}, const QSet<QString> &comparedPaths = {});
    /** Copies an internal file to where extractedTempFiles says. */
    void extractToTemporary(qint64 id);
    /** The target is made, beside the path of the request. Of a local database only. */
    void exportDatabase(const ExportRequest &request, const std::shared_ptr<PartFile> &target);
    /** Makes thumbnails of external files anew; without ids those of all that have one. */
    void remakeThumbnails(const QVector<qint64> &ids);
    /** All or nothing; tagsChanged() tells what came of it. */
    void changeTags(const TagChanges &changes);
    /** Writes changes of edits one after the other, all or nothing; replayed() tells what came of it. */
    void replay(const QVector<ChangeSet> &changes);
    /** The same with what makes one tag of several. */
    void mergeTags(qint64 target, const QVector<qint64> &others);
    /**
     * Looks whether these external files are in their places, refreshes the records of those that have
     * changed and removes those that are copies of others by now. A check that gives way ends, or never
     * begins, once another one that does is asked for. One that only marks writes nothing.
     */
    void checkExternalFiles(const QVector<qint64> &ids, bool givesWay = true, bool marksOnly = false);
    /** Merges a local database, or a shell, into the open one, which is a local one, too. */
    void importDatabase(const QString &source, bool isShell, const ImportOptions &options);
    /** Gives external files new places, a path each. */
    void locateFiles(const QVector<qint64> &ids, const QStringList &paths, const QStringList &idCodes = {});
    /** Ends the checks that give way. True when one had not come to its end. */
    bool endChecks();
    /** Ends the others. The files that are to be looked at once more. */
    QVector<qint64> endSingleChecks();
    void setBrowsingTreeId(qint64 id);
    /** Ends the running operation and those in the queue; nothing when idle. */
    void cancelOperations();
    bool isBusy() const;

signals:
    void filesAdded();
    void filesUpdated();
    void filesRemoved(QVector<qint64> ids);
    void fileLoaded();
    /** The receiver owns the image; without a receiver it is freed. */
    void thumbnailLoaded(qlonglong fileId, QImage *image);
    /** These could not be read, and no other error tells of it. */
    void thumbnailsFailed(QVector<qint64> ids, QSqlError error);
    /** When any client last made a change before the one whose news follow; on a server. */
    void aboutToCommit(QDateTime lastChange);
    /** The stamp of that change. */
    void committed(QDateTime ownChange);
    void updateTags(QVector<qint64> ids);
    void updateNodes(QVector<qint64> ids);
    void updatedFiles(QVector<qint64> ids);
    void tagsChanged(TagChanges done);
    void replayed(ReplayOutcome outcome);
    void startedFilesOperation(QString label);
    void filesOperationProgress(QString text, int percent);
    void finishedFilesOperation();
    void extractedTempFiles(QVector<QPair<qint64, QString>> files);
    void duplicatesReady(PresentableDuplicates duplicates);
    /** An add is stored, and the news of its rows are out. */
    void added(AdditionOutcome outcome);
    /** What is to be told of an operation that has finished. */
    void fellShort(OperationShortfall shortfall);
    /** Text, then title. */
    void error(QString text, QString title);
    /** Text, then title. */
    void exchangeDone(QString text, QString title);
    /** The addresses of one request are in the database now; false when they are not all there. */
    void additionSettled(QStringList texts, bool areStored);
    void autoLinked(AutoLinkOutcome outcome);
    void filesModified(QVector<qint64> ids, DeletedFileRepresentations deletedFiles);
    void checkBrokenOff();
    void noLongerPresent(QVector<qint64> ids);
    void present(QVector<qint64> ids);
    void importNotification(QList<ShellFile> files);
    void filesImported();
    void remadeAllThumbnails();

protected:
    /** The worker of the back-end, without a parent. */
    virtual FileOperationWorker *createWorker(const QString &connectionName) = 0;
    const DBDetails &details() const { return m_details; }

    /** Queues a record and arms the start of the thread. */
    void enqueue(const FileOperation &operation);

private:
    void connectWorker();
    void connectProgress();
    void armStart();
    void takeThumbnail(qlonglong fileId, QImage *image);

    DBDetails m_details;
    FileOperationWorker *m_worker = nullptr;
    QThread *m_thread = nullptr;
};

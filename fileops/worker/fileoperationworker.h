#pragma once

#include "app/settings/dbdetails.h"
#include "core/tagging/tagchange.h"
#include "fileops/files/idcodegenerator.h"
#include "fileops/files/shellfile.h"
#include "fileops/worker/additionoutcome.h"
#include "fileops/worker/autolinkoutcome.h"
#include "fileops/worker/deletedfilerepresentations.h"
#include "fileops/worker/fileoperation.h"
#include "fileops/worker/fileoperationqueries.h"
#include "fileops/worker/operationreport.h"
#include "fileops/worker/presentableduplicates.h"
#include "fileops/worker/replayoutcome.h"

#include <QImage>
#include <QList>
#include <QMutex>
#include <QPair>
#include <QSet>

#include <atomic>

class FileOperationWorker;
class Savepoint;

/** Does what a record asks for, on the worker's thread, and returns when it is done. */
using OperationRunner = void (*)(FileOperationWorker &worker, const FileOperation &operation);

/**
 * The background half of file operations: a queue of records, each run by an OperationRunner, on the thread
 * that FileOperationProvider owns. It opens the worker's connection for each run through the queue and
 * removes it afterwards. The methods of the first group may be called from any thread, all else on the
 * worker's.
 */
class FileOperationWorker : public FileOperationQueries
{
    Q_OBJECT

public:
    FileOperationWorker(const QString &connectionName, const DBDetails &details,
                        const AbstractQueryConstructor *constructor);
    ~FileOperationWorker() override;

    /** Who does what the records ask for; before the first of them. Without it they come to nothing. */
    void setOperations(OperationRunner operations) { m_operations = operations; }

    /** A check that gives way takes the place of those that do and have not begun, and ends the running one.
     */
    void enqueue(const FileOperation &operation);
    /** The rest of the running check goes behind what waits, unless a later one has taken its place. */
    void postpone(const FileOperation &rest);
    /** Ends the checks that give way, running or queued. True when there was one. */
    bool endChecks();
    /** Ends the others, running or queued, and gives the ids of their files. */
    QVector<qint64> endSingleChecks();
    /** Takes the first request for this thumbnail out of the queue again. */
    void forgetThumbnail(qint64 fileId);
    /** Ends the running operation and, each at its first check, those in the queue; nothing when idle. */
    void cancel();
    /** Ends everything; for the destruction of the provider only. */
    void stop();
    /** True while something is queued or running. */
    bool isBusy() const;
    bool hasQueued() const;
    bool isStopped() const;
    bool isCanceled() const;
    /** Something else has taken the place of the running operation. */
    bool isOutdated() const { return m_isOutdated; }
    /** The question at the head of every long loop: stopped, canceled, or of no use any more? */
    bool shouldEnd() const { return isStopped() || isCanceled() || isOutdated(); }
    /** The receiver of thumbnailLoaded says so when it has taken an image over. */
    void imageTaken(QImage *image);

    /** Keeps it until the end of the operation; nothing while signals are blocked. */
    void emitError(const QSqlError &error) override;
    /** What has failed in the running operation. */
    OperationReport &report() { return m_report; }
    /** What others lock was in the way. It is for what follows, too, and each look would wait for it anew. */
    bool hasMetLock() const;
    /** For an operation whose failure must end those behind it too. */
    void cancelAll();
    QString connectionName() const { return m_connectionName; }
    /** A handle that no file has yet. In a run of new files the database is asked for many at once. */
    virtual bool nextIdCode(QString &idCode);
    virtual QString drawIdCode() const { return m_idCodes.generate(); }
    void beginRows() override;
    void dropRows() override;
    /**
     * Goes back from a run that failed while the signals were blocked, as its items are tried again one by
     * one. Tells of the failure where that cannot be.
     */
    void takeBack(Savepoint &savepoint);
    /** Emits thumbnailLoaded; until imageTaken, the image counts as this worker's. */
    void sendThumbnail(qint64 fileId, QImage *image);
    /** False: statements fail at once where a lock is in the way, until it is set to true again. */
    virtual void setPatient(bool /*isPatient*/) {}

    /** Percent of a batch done, for operationProgress. */
    static int percent(int done, int total);

public slots:
    void runOperationQueue();

signals:
    void filesAdded();
    void filesUpdated();
    void filesRemoved(QVector<qint64> ids);
    void fileLoaded();
    void thumbnailLoaded(qlonglong fileId, QImage *image);
    /** These could not be read, for the last of reasons; no other error goes out for them. */
    void thumbnailsFailed(QVector<qint64> ids, QSqlError error);
    void startedOpration(FileOperationType type, QString label);
    void operationProgress(FileOperationType type, QString text, int percent);
    void finishedOpration(FileOperationType type);
    /** After finishedOpration: what is to be told of the operation. */
    void fellShort(OperationShortfall shortfall);
    /** Text, then title. */
    void error(QString text, QString title);
    /** Text, then title: what went from one database to another, and what did not. */
    void exchangeDone(QString text, QString title);
    /**
     * The addresses of one request, or the files that were to be added in spite of their names, are in the
     * database now; false when not all of the addresses or none of the files are there.
     */
    void additionSettled(QStringList texts, bool areStored);
    void finished();
    /** The last change that any client has made, just before the commit of an own one; on a server. */
    void aboutToCommit(QDateTime lastChange);
    /** The stamp of that commit. An operation of many is at work for long, while the window goes on. */
    void committed(QDateTime ownChange);
    void updateTags(QVector<qint64> ids);
    void updateNodes(QVector<qint64> ids);
    void updatedFiles(QVector<qint64> ids);
    /** What was really changed: nobody has to read these files. */
    void tagsChanged(TagChanges done);
    void replayed(ReplayOutcome outcome);
    void extractedTempFiles(QVector<QPair<qint64, QString>> files);
    void duplicatesReady(PresentableDuplicates duplicates);
    /** After the news of its rows. */
    void added(AdditionOutcome outcome);
    /** After finishedOpration, whatever came of it. */
    void autoLinked(AutoLinkOutcome outcome);
    void filesModified(QVector<qint64> ids, DeletedFileRepresentations deletedFiles);
    /** A lock or a cancel ended a check that gives way; it is no rest of its own, and may be asked for anew.
     */
    void checkBrokenOff();
    void noLongerPresent(QVector<qint64> ids);
    void present(QVector<qint64> ids);
    void importNotification(QList<ShellFile> files);
    void remadeAllThumbnails();

protected:
    const DBDetails &details() const { return m_details; }
    /** The driver's options for the worker's connection. */
    virtual QString connectOptions() const { return QString(); }
    /** Called once the connection is open. */
    virtual void prepareConnection() {}
    void loseConnection() override;

private:
    bool openConnection();
    void failOpening(const QSqlError &error);
    void removeConnection();
    bool takeNext(FileOperation &operation);
    bool dropChecks();
    void run(const FileOperation &operation);
    void tellShortfall();
    /** The first that is not about thumbnails; an unused one when there is none. */
    FileOperation dropQueue(const QSqlError &error);
    void finishRun();
    bool drawIdCodes();

    OperationRunner m_operations = nullptr;
    const QString m_connectionName;
    const DBDetails m_details;
    IdCodeGenerator m_idCodes;
    bool m_isInRun = false;
    QStringList m_freeIdCodes; ///< that no file had when they were asked for; of the run
    OperationReport m_report;

    mutable QMutex m_queueMutex;
    QList<FileOperation *> m_queue;
    bool m_isRunning = false;             ///< guarded with the queue
    bool m_runsCheck = false;             ///< one that gives way; guarded likewise
    QVector<qint64> m_filesInSingleCheck; ///< of the running one that does not; guarded likewise
    std::atomic<bool> m_isOutdated{false};

    mutable QMutex m_stopMutex;
    bool m_stop = false;
    mutable QMutex m_cancelMutex;
    bool m_cancel = false;

    QMutex m_imagesMutex;
    QSet<QImage *> m_imagesOnTheirWay;
};

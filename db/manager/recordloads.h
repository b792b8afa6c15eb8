#pragma once

#include "db/loading/filesource.h"
#include "db/manager/providers.h"

#include <QBasicTimer>
#include <QObject>
#include <QVector>

#include <functional>
#include <memory>

class ErrorTeller;
class FileLoader;
class PendingReloads;
class RecordKeeper;

/**
 * Has the providers read records: all of a kind, or rows by their ids. The answers come to the RecordKeeper.
 * Rows that another connection keeps locked are asked for again a little later, without a word. All files are
 * read by a FileLoader: what it brings is taken over in short steps of the event loop, or at once by who
 * wants to wait for it. What is to be loaded by ids meanwhile comes after it. Owned by the manager; GUI
 * thread.
 */
class RecordLoads : public QObject
{
    Q_OBJECT

public:
    /** Both must outlive this. */
    RecordLoads(RecordKeeper &records, ErrorTeller &errors);
    ~RecordLoads() override;
    /** Before any load; without them nothing is read. */
    void setProviders(const DatabaseProviders &providers) { m_providers = providers; }

    void loadAllTags();
    void loadAllGroups();
    void loadAllNodes();
    void loadBrowsingTrees();
    void loadAllRelationNodes();
    /** Ends what beginFiles() began, and waits for what is missing; without it all is read here and now. */
    void loadAllFiles();
    /**
     * Begins to read all files; the records of before go. Of a server, in the state of a transaction that has
     * this snapshot. False when it cannot be done in this way.
     */
    bool beginFiles(const DBDetails &details, const QString &snapshot);
    /** Whether the files that are being read are so many that an event loop should go on meanwhile. */
    bool areFilesMany() const { return m_highestId > mostFilesAtOnce; }
    bool areFilesBeingRead() const { return m_loader != nullptr; }
    /** For tests. */
    static void setMostFilesAtOnce(qint64 files) { mostFilesAtOnce = files; }

    void loadTags(const QVector<qint64> &tagIds);
    void loadNodes(const QVector<qint64> &nodeIds);
    void loadFiles(const QVector<qint64> &fileIds);
    /** A load of these ids, of a kind of PendingReloads: kept for later when it finds a lock. */
    void runOrKeep(int kind, const QVector<qint64> &ids, const std::function<void()> &load);

    /** Asks for them a little later. */
    void keep(int kind, const QVector<qint64> &ids);
    bool isWaiting() const;
    /** Forgets what was kept, for a database that closes. */
    void clear();

signals:
    /** How much of all files is there, in percent. */
    void progress(int percent);
    /** All of them are there, or will not come: loadAllFiles() is to follow. */
    void filesRead();
    /** Everything was to be read when the database was busy. */
    void fullReloadDue();
    void thumbnailDue(qlonglong fileId);

protected:
    void timerEvent(QTimerEvent *event) override;

private:
    void retry(int kind, const QVector<qint64> &ids);
    void takeSome();
    void take(FileBatch &batch);
    void dropLoader();

    static qint64 mostFilesAtOnce;

    RecordKeeper &m_records;
    ErrorTeller &m_errors;
    DatabaseProviders m_providers;
    PendingReloads *m_pending;
    std::unique_ptr<FileLoader> m_loader;
    QBasicTimer m_next;
    qint64 m_highestId = 0;
    int m_toldPercent = 0;
};

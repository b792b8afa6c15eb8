#pragma once

#include "db/manager/providers.h"

#include <QObject>
#include <QVector>

#include <functional>

class ErrorTeller;
class PendingReloads;
class RecordKeeper;

/**
 * Has the providers read records: all of a kind, or rows by their ids. The answers come to the RecordKeeper.
 * Rows that another connection keeps locked are asked for again a little later, without a word. Owned by the
 * manager; GUI thread.
 */
class RecordLoads : public QObject
{
    Q_OBJECT

public:
    /** Both must outlive this. */
    RecordLoads(RecordKeeper &records, ErrorTeller &errors);
    /** Before any load; without them nothing is read. */
    void setProviders(const DatabaseProviders &providers) { m_providers = providers; }

    void loadAllTags();
    void loadAllGroups();
    void loadAllNodes();
    void loadBrowsingTrees();
    void loadAllRelationNodes();
    void loadAllFiles();

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
    /** Everything was to be read when the database was busy. */
    void fullReloadDue();
    void thumbnailDue(qlonglong fileId);

private:
    void retry(int kind, const QVector<qint64> &ids);

    RecordKeeper &m_records;
    ErrorTeller &m_errors;
    DatabaseProviders m_providers;
    PendingReloads *m_pending;
};

#pragma once

#include "db/sql/basedbprovider.h"
#include "db/sql/writeguard.h"

#include <QMutex>
#include <QWaitCondition>

#include <functional>

/**
 * Notices that another program has written to a local database since its records were read. SQLite tells on
 * each connection whether any other one has committed ("PRAGMA data_version"), and to it the worker's
 * connection is as foreign to the window's as another program's. So a commit of the worker goes like this: it
 * is announced; after it the window looks, and then the worker does on its own connection. When the worker
 * sees nobody's change still, what the window has seen was the worker's alone, and is noted. An edit
 * of the window that comes in between looks at once, and waits a moment for the worker; else it counts as
 * busy.
 *
 * Lives on the main thread, and outlives the worker, whose half is WorkerWrites.
 */
class ForeignWrites : public BaseDBProvider, public WriteGuard
{
    Q_OBJECT

public:
    explicit ForeignWrites(QObject *parent);

    /** The version of the data as this connection sees it; false when it could not be read. */
    static bool readVersion(BaseDBProvider &provider, const QString &connectionName, qint64 &version);

    /** The records are those of now: to be called in the transaction that reads them. */
    bool noteState();
    /** Looks at the database; tells of news, or that it is busy, when the answer is no. */
    bool mayWrite() override;
    /** Whether mayWrite() would have to wait until a commit of the worker is settled. */
    bool isWorkerCommitting();
    /**
     * Has the window look later; outdated() tells when it finds news. After a full disk SQLite counts what it
     * put back itself as a change, and that must not cost the next edit. Called on either thread.
     */
    void changesUndone() override;

    // The rest is the worker's, which calls it on its own thread.

    /** Has the window look; false also when it does not answer in time. */
    bool isWindowCurrent(const std::function<bool()> &shouldEnd);
    /** A commit comes now; commitFailed() or settleCommit() follows. */
    void announceCommit();
    void commitFailed();
    /** Has the window look at what the commit left. */
    bool showCommit(const std::function<bool()> &shouldEnd);
    /** Whether nobody else had a part in what the window has seen. */
    void settleCommit(bool isOwn);

signals:
    /** Another program has written: what is shown must be read anew. */
    void newsFound();
    /** The same, with no edit to be dropped for it. */
    void outdated();
    /** The database cannot be judged at this moment. */
    void busyFound();

private:
    bool ask(const std::function<bool()> &question, const std::function<bool()> &shouldEnd);
    void distrust();
    /** Has the worker's commit settled from within an edit; false when that takes too long. */
    bool settleHere();
    void lookAtCommit();

    QMutex m_mutex;            ///< of what follows
    qint64 m_version = -1;     ///< of the records, as the window's connection counts
    qint64 m_seenVersion = -1; ///< after a commit of the worker that is not settled yet
    bool m_isTrusted = true;
    bool m_isWorkerCommitting = false;
    bool m_isLookWanted = false; ///< by the worker, for its commit
    bool m_isLookTaken = false;  ///< false also when it failed
    QWaitCondition m_changed;    ///< any of the three
};

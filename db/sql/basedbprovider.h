#pragma once

#include "db/sql/queryrunner.h"
#include "db/sql/slicereader.h"
#include "db/sql/syncrunner.h"
#include "db/sql/tabledata.h"

#include <QHash>
#include <QMetaMethod>
#include <QObject>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QVector>

#include <functional>

class AbstractQueryConstructor;
class StatementQueue;
class WriteGuard;

/**
 * The base of all classes that hold the SQL of one domain. It borrows the query constructor. "Sync" helpers
 * use the default connection (main thread), "async" ones the worker's connection (worker thread); nothing
 * here makes a thread. Errors go out as signals, results as bools.
 */
class BaseDBProvider : public QObject
{
    Q_OBJECT

public:
    explicit BaseDBProvider(const AbstractQueryConstructor *constructor, QObject *parent = nullptr);
    ~BaseDBProvider() override;

    /** Assigns the rows to `table`, whose holder owns them; rows held before are not freed. */
    bool runSync(const QString &query, TableData &table, const QString &connectionName = QString());
    bool runAsync(const QString &query, TableData &table);
    bool runAsyncWithBlob(const QString &query, const QByteArray &blob, const QString &placeholder,
                          TableData &table);
    /** For statements whose rows nobody wants. */
    bool runSync(const QString &query, const QString &connectionName = QString());
    /**
     * One writing statement on the default connection. On a local database it gets a transaction of its own,
     * so that the write guard is asked before it.
     */
    bool runEdit(const QString &query);
    bool runAsync(const QString &query);
    bool runAsyncWithBlob(const QString &query, const QByteArray &blob, const QString &placeholder);
    bool runWithBlob(const QString &query, const QByteArray &blob, const QString &placeholder,
                     const QString &connectionName = QString());

    /**
     * Runs a statement with "?" for its values, kept prepared from its first use on. Values need no quoting.
     * For statements that repeat many times; all calls on one provider come from one thread. An empty name
     * means the default connection.
     */
    bool runPrepared(const QString &statement, const QVariantList &values,
                     const QString &connectionName = QString());
    /** The same with the rows of the result, owned by the holder of `table`. */
    bool runPrepared(const QString &statement, const QVariantList &values, TableData &table,
                     const QString &connectionName = QString());
    /** Lets go of the prepared statements; needed before their connection is closed. */
    void clearPrepared();

    /**
     * Reads a large result on the default connection, handing it on in slices of at most `sliceRows`. The
     * rows are lent: they are reused for the next slice and freed at the end. With a key column, a row whose
     * key equals the one before carries only `newKeyColumns`, its other values are invalid; the result must
     * be ordered by that key. True when all rows were handed on.
     */
    bool runSyncInSlices(const QString &query, int sliceRows, const SliceTaker &take,
                         const SliceKey &key = SliceKey(), const QString &connectionName = QString());
    /**
     * The rows of `query` LEFT JOIN `linksQuery`, handed on in the same way, at a third of the price: a
     * driver fetches every column of every joined row, here each side is read once. Both results are ordered
     * by their first column, the key, a number that `query` has once. The columns are those of `query` and
     * then those of `linksQuery` behind its key. Further rows of a key carry the key and the link's columns
     * only.
     */
    bool runSyncJoined(const QString &query, const QString &linksQuery, int sliceRows,
                       const SliceTaker &take);

    /** Borrowed; may be null. */
    void setWriteGuard(WriteGuard *guard) { m_writeGuard = guard; }
    // An empty name means the default connection. Begin and commit report their failure by errorOccured. On a
    // local database begin takes the write lock, so that what is found out under it holds until the commit.
    virtual bool beginTransaction(const QString &connectionName = QString());
    virtual bool commitTransaction(const QString &connectionName = QString());
    virtual bool rollbackTransaction(const QString &connectionName = QString());

    /**
     * From here on the provider takes part in a transaction of another one on the default connection: begin
     * and commit are left to that one, and news wait. They are dropped in the end unless it was committed.
     * Such transactions may stand inside each other: the outermost one counts. While the queue, which is
     * borrowed, is open, statements of the default connection wait in it.
     */
    void joinTransaction(StatementQueue *queue = nullptr);
    void leaveTransaction(bool isCommitted);
    /** Gives out the news that waited, in their order. */
    void tellNews();

    // The one savepoint of the worker's connection; it does not nest.
    bool setSavepoint();
    bool releaseSavepoint();
    /** Goes back to the savepoint and releases it. */
    bool rollbackToSavepoint();
    /** True from a failed way back on until the next transaction: the running one must not go on. */
    bool isSavepointLost() const { return m_savepointLost; }
    /** True once a server could not be reached any more: nothing that follows on its connection succeeds. */
    bool isConnectionLost() const { return m_connectionLost; }
    /**
     * The last error of a statement, also of one that failed while the signals were blocked. None for what
     * failed with the connection.
     */
    QSqlError lastError() const { return m_lastError; }
    /** So that lastError() tells of what follows. */
    void forgetLastError() { m_lastError = QSqlError(); }

    /** Says that a statement failed; for one that was kept silent until it was clear what it means. */
    virtual void emitError(const QSqlError &error) { emit errorOccured(error); }

signals:
    void connectionError();
    void errorOccured(QSqlError error);

protected:
    const AbstractQueryConstructor *constructor() const { return m_constructor; }

    /**
     * A read request: runs the statement on the default connection and answers by the provider's signal,
     * before it returns. The receiver of that signal owns the rows; with no receiver they are freed.
     */
    template <class Provider, class Table>
    void request(const QString &query, void (Provider::*reply)(bool, Table))
    {
        SyncRunner runner;
        forwardErrors(runner);
        if (isSignalConnected(QMetaMethod::fromSignal(reply)))
            connect(&runner, &QueryRunner::queryFinished, static_cast<Provider *>(this), reply);
        TableData rows;
        if (takeAnswer(query, rows))
            runner.answer(rows);
        else
            runner.run(query);
    }
    /** What will be read when the edit that goes on is through: it may come with the commit then. */
    void expect(const QString &query);
    /** Runs a query behind what waits in the queue, in one message; its own result is the open one then. */
    bool executeForwardOnly(QSqlQuery &statement, const QString &query);
    /** Emits a signal now, or when the transaction that was joined is through. */
    void announce(const std::function<void()> &news);
    /** Ends the running transaction and emits connectionError. */
    virtual void loseConnection();
    /** For a new connection in the place of a lost one. */
    void forgetLostConnection() { m_connectionLost = false; }
    /** For a begin of another kind: no savepoint is lost in a new transaction. */
    void forgetLostSavepoint() { m_savepointLost = false; }
    /** True, and told, when the statement has failed. */
    bool reportError(const QSqlDatabase &database, const QSqlQuery &statement);
    /** Passes a runner's two error signals on as the provider's own. */
    void forwardErrors(const QueryRunner &runner);
    /** To be called once a local database is locked for writing: from there on nothing waits until the end.
     */
    static void waitForCommitOnly(const QSqlDatabase &database);

private:
    bool beginWriting(QSqlDatabase &database);
    bool takeAnswer(const QString &query, TableData &rows);
    bool isQueueOpen() const;
    bool runInQueue(const QString &query, TableData &table);
    /** Before a statement that does not take along what waits. */
    bool sendWaiting(const QString &connectionName = QString());
    bool runOnSavepoint(const QString &statement);
    void tellError(const QSqlError &error);
    /** The same, or that the connection is lost, after a failure on it. */
    void tellFailure(const QSqlDatabase &database, const QSqlError &error);
    QSqlQuery *preparedQuery(const QString &statement, const QString &connectionName);

    const AbstractQueryConstructor *m_constructor;
    WriteGuard *m_writeGuard = nullptr;
    StatementQueue *m_queue = nullptr;
    QHash<QString, QHash<QString, QSqlQuery>> m_prepared;
    QSqlError m_lastError;
    QVector<std::function<void()>> m_news;
    int m_joinDepth = 0;            ///< of transactions around each other that it takes part in
    bool m_isInTransaction = false; ///< one that this provider began on a local database
    bool m_savepointLost = false;
    bool m_connectionLost = false;
    bool m_isGoingBack = false; // after a failure that was told
};

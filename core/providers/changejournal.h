#pragma once

#include "core/providers/foreignchanges.h"
#include "db/sql/basedbprovider.h"
#include "db/sql/statementqueue.h"

/**
 * The journal that a server keeps of changed rows, as far as they are others'. A place in it is the stamp of
 * a commit: what is read together with a place holds all commits up to it. A server that was set up without a
 * journal has none. GUI thread, default connection.
 */
class ChangeJournal : public BaseDBProvider
{
    Q_OBJECT

public:
    explicit ChangeJournal(const AbstractQueryConstructor *constructor, QObject *parent = nullptr);

    /** Has the server tell of each commit from here on; once a connection. */
    void listen();
    /** Finds out whether there is a journal, and its last place. False when that could not be read. */
    bool readPlace();
    bool isThere() const { return m_isThere; }

    enum Look {
        Current, ///< nobody else has changed anything since the place
        News,    ///< the changes are told, and the place is behind them
        Unread   ///< there are no stamps, or they could not be read
    };
    /** Looks for what others changed, in a statement of its own. */
    Look look(ForeignChanges &changes);
    /** The same with the begin of a transaction that writes: it is open unless the answer is Unread. */
    Look begin(ForeignChanges &changes);
    /** The same for one that only reads, all of it in the state of the place. */
    Look beginReading(ForeignChanges &changes);

    enum Commit {
        Committed,
        Outdated, ///< others have changed what the edit rests on since the last look
        Failed
    };
    /**
     * Ends the transaction of begin(), with what waits in the queue; it is rolled back unless it was
     * committed.
     */
    Commit commit(const EditBase &base);
    /** Of the edits between begin() and commit(). */
    StatementQueue &queue() { return m_queue; }

signals:
    /** Another program has committed. */
    void told();

private:
    Look read(const QString &beginning, ForeignChanges &changes);
    static void note(const QSqlQuery &row, ForeignChanges &changes);

    StatementQueue m_queue;
    bool m_isThere = false;
    qint64 m_place = 0;
};

#pragma once

#include "db/sql/tabledata.h"

#include <QHash>
#include <QStringList>

/**
 * What an edit has to say to a server, where each message takes its time. While the edit runs, statements
 * without an answer wait for the next one that has an answer, or for the commit, and go along with it; what
 * is to be read afterwards comes back with the commit. Whether a waiting statement succeeds is known from
 * then on alone. Main thread.
 */
class StatementQueue
{
public:
    StatementQueue() = default;
    ~StatementQueue() { close(); }
    StatementQueue(const StatementQueue &) = delete;
    StatementQueue &operator=(const StatementQueue &) = delete;

    /** An edit has begun: nothing of an earlier one waits. */
    void open();
    bool isOpen() const { return m_isOpen; }
    /** One statement, which waits. */
    void add(const QString &statement) { m_waiting.append(statement); }
    bool isWaiting() const { return !m_waiting.isEmpty(); }
    /** What waits, in its order; from here on it is the caller's to send. */
    QStringList take();
    /** A query whose rows are wanted when the edit is through. */
    void expect(const QString &query) { m_expected.append(query); }
    QStringList takeExpected();
    /** The edit is through; answers are kept until close(). */
    void end() { m_isOpen = false; }
    /** The rows become those of the queue. */
    void keepAnswer(const QString &query, const TableData &rows);
    /** The answer to an expected query, once; its rows become the caller's. False when there is none. */
    bool takeAnswer(const QString &query, TableData &rows);
    /** Nothing waits, and no answer is kept: what is read from here on may be something else. */
    void close();

private:
    bool m_isOpen = false;
    QStringList m_waiting;
    QStringList m_expected;
    QHash<QString, TableData> m_answers;
};

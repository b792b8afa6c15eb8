#pragma once

#include <QString>

#include <memory>

class QSqlDatabase;

/**
 * Bounds the wait for a server. A statement gives its thread to the driver until the server answers, and one
 * that has stopped, behind a machine that still lives, never does: no time-out of the network notices. So
 * whoever waits makes a Waiting, and a thread of its own looks after it: it ends a statement that nobody
 * wants any more, and closes the way to a server that is silent for too long, upon which the connection
 * counts as lost. All functions may be called from any thread.
 */
namespace ServerWatch {
/** Looks after an open connection from now on; nothing happens for one to a local database. */
void add(const QSqlDatabase &database);
/** To be called before a connection is closed. */
void remove(const QString &connectionName);

/**
 * Ends the statement that runs on a connection, and each later one that has to wait, until it is taken back
 * or the connection is removed. Nothing for a connection that is not looked after.
 */
void setCanceled(const QString &connectionName, bool isCanceled);

/** How long a server may be silent; 15 seconds unless a test says otherwise. */
void setBound(int milliseconds);

enum Patience {
    Strict,  ///< the answer is short: the bound holds for it
    Patient, ///< it may take its time, for a lock or for much data, as long as the server answers others
};

class Line;

/** Stands while its maker waits for the server of a connection; they may stand inside each other. */
class Waiting
{
public:
    explicit Waiting(const QSqlDatabase &database, Patience patience = Strict);
    ~Waiting();
    Waiting(const Waiting &) = delete;
    Waiting &operator=(const Waiting &) = delete;

    /** The server has sent something: the time begins anew. */
    void gotAnswer();

private:
    std::shared_ptr<Line> m_line; ///< null for a local database
    Patience m_outerPatience = Strict;
};
} // namespace ServerWatch

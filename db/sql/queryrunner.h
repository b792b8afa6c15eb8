#pragma once

#include "db/sql/tabledata.h"

#include <QByteArray>
#include <QObject>
#include <QSqlError>

class QSqlDatabase;
class QSqlQuery;

/**
 * Runs one statement at a time on a named connection, in the thread of its caller, which must be the thread
 * that opened the connection. A runner may live on the stack. When a connection is not open, or turns out to
 * be lost by a statement that fails, connectionError() takes the place of the error: to ask each time before
 * would double the round trips to a server. Queries run forward-only.
 */
class QueryRunner : public QObject
{
    Q_OBJECT

public:
    explicit QueryRunner(QObject *parent = nullptr);

    /** Answers by queryFinished, whose receiver owns the rows; without a receiver they are freed here. */
    virtual void run(const QString &query) = 0;
    /**
     * On success `table` becomes the result and owns its rows, while queryFinished lends them. True exactly
     * when the statement succeeded. An empty name means the runner's own connection.
     */
    virtual bool run(const QString &query, TableData &table, const QString &connectionName) = 0;
    /** The same for a statement with one placeholder, which takes the blob. */
    virtual bool runWithBlob(const QString &query, const QByteArray &blob, const QString &placeholder,
                             TableData &table, const QString &connectionName) = 0;

    /**
     * True when the connection can take a statement. On a server this costs a round trip. After a failure it
     * tells a lost connection from a wrong statement.
     */
    static bool isConnectionAlive(const QSqlDatabase &database);
    /** Answers as if the rows had just been read. */
    void answer(const TableData &rows);
    /** Reads what an executed query holds; false when the reading broke off, with no row in `table`. */
    static bool readRows(QSqlQuery &query, TableData &table);
    /** The names of a query's columns, in their order. */
    static QStringList columnNames(const QSqlQuery &query);

signals:
    void queryFinished(bool success, TableData table);
    void errorOccured(QSqlError error);
    void connectionError();

protected:
    void runOn(const QString &connectionName, const QString &query);
    bool runOn(const QString &connectionName, const QString &query, TableData &table);
    bool runBlobOn(const QString &connectionName, const QString &query, const QByteArray &blob,
                   const QString &placeholder, TableData &table);

private:
    bool checkConnection(const QSqlDatabase &database);
    bool finish(const QSqlDatabase &database, QSqlQuery &query, bool executed, TableData &table);
};

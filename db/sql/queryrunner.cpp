#include "db/sql/queryrunner.h"

#include "app/settings/constants.h"
#include "db/sql/drivertexts.h"
#include "db/sql/readbound.h"
#include "db/sql/serverwatch.h"

#include <QMetaMethod>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QSqlRecord>

namespace {
// A server refuses everything but a rollback while a transaction has failed; the connection itself is fine.
const QLatin1String failedTransaction("25P02");
} // namespace

QueryRunner::QueryRunner(QObject *parent) : QObject(parent) {}

bool QueryRunner::isConnectionAlive(const QSqlDatabase &database)
{
    if (!database.isValid() || !database.isOpen())
        return false;
    // A file cannot be lost as a server can, and asking it would double the work of every statement.
    if (database.driverName() == Constants::sqliteDriver)
        return true;
    const ServerWatch::Waiting waiting(database);
    QSqlQuery query(database);
    if (query.exec(QStringLiteral("select 1;")))
        return query.next() && query.isValid();
    return query.lastError().nativeErrorCode() == failedTransaction;
}

QStringList QueryRunner::columnNames(const QSqlQuery &query)
{
    const QSqlRecord record = query.record();
    QStringList names;
    names.reserve(record.count());
    for (int i = 0; i < record.count(); ++i)
        names.append(record.fieldName(i));
    return names;
}

bool QueryRunner::readRows(QSqlQuery &query, TableData &table)
{
    if (!query.isSelect())
        return true;
    if (!query.next())
        return !query.lastError().isValid();
    const QStringList columns = columnNames(query);
    TableData rows;
    do {
        QVector<QVariant> values;
        values.reserve(columns.size());
        for (int i = 0; i < columns.size(); ++i)
            values.append(DriverTexts::read(query, i));
        auto *row = new TableRowData(columns);
        row->setValues(std::move(values));
        rows.append(row);
    } while (query.next());
    if (query.lastError().isValid()) {
        freeRows(rows);
        return false;
    }
    table = rows;
    return true;
}

void QueryRunner::runOn(const QString &connectionName, const QString &query)
{
    TableData table;
    runOn(connectionName, query, table);
    if (!isSignalConnected(QMetaMethod::fromSignal(&QueryRunner::queryFinished)))
        freeRows(table);
}

bool QueryRunner::runOn(const QString &connectionName, const QString &query, TableData &table)
{
    const QSqlDatabase database = QSqlDatabase::database(connectionName, false);
    if (!checkConnection(database))
        return false;
    QSqlQuery statement(database);
    statement.setForwardOnly(true);
    ReadBound::beginStatement(query.size());
    const auto executed = [&] {
        const ServerWatch::Waiting waiting(database, ServerWatch::Patient);
        return statement.exec(query);
    };
    return finish(database, statement, executed(), table);
}

bool QueryRunner::runBlobOn(const QString &connectionName, const QString &query, const QByteArray &blob,
                            const QString &placeholder, TableData &table)
{
    const QSqlDatabase database = QSqlDatabase::database(connectionName, false);
    if (!checkConnection(database))
        return false;
    QSqlQuery statement(database);
    statement.setForwardOnly(true);
    const auto executed = [&] {
        const ServerWatch::Waiting waiting(database, ServerWatch::Patient);
        if (!statement.prepare(query))
            return false;
        statement.bindValue(placeholder, QVariant(blob), QSql::In);
        return statement.exec();
    };
    return finish(database, statement, executed(), table);
}

void QueryRunner::answer(const TableData &rows)
{
    TableData table = rows;
    emit queryFinished(true, table);
    if (!isSignalConnected(QMetaMethod::fromSignal(&QueryRunner::queryFinished)))
        freeRows(table);
}

bool QueryRunner::checkConnection(const QSqlDatabase &database)
{
    if (database.isValid() && database.isOpen())
        return true;
    emit connectionError();
    return false;
}

bool QueryRunner::finish(const QSqlDatabase &database, QSqlQuery &query, bool executed, TableData &table)
{
    TableData rows;
    bool success = executed;
    if (success) {
        const ServerWatch::Waiting waiting(database, ServerWatch::Patient);
        success = readRows(query, rows);
    }
    if (success) {
        table = rows;
    } else {
        const QSqlError error = query.lastError();
        if (isConnectionAlive(database))
            emit errorOccured(error);
        else
            emit connectionError();
    }
    // Receivers may run statements of their own on this connection, so this one gives up its lock first.
    query.finish();
    emit queryFinished(success, rows);
    return success;
}

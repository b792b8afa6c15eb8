#include "fileops/exchange/quietstatements.h"

#include "db/sql/sqliteerrors.h"
#include "fileops/worker/fileoperationworker.h"

#include <QSignalBlocker>

bool QuietStatements::run(const QString &statement, const QVariantList &values)
{
    TableData table;
    const bool isDone = read(statement, table, values);
    freeRows(table);
    return isDone;
}

bool QuietStatements::read(const QString &statement, TableData &table, const QVariantList &values)
{
    // The worker would take an error of the other database for one of the open database, and tell of it.
    const QSignalBlocker silence(&m_worker);
    m_worker.forgetLastError();
    const bool isDone = m_worker.runFast(statement, values, table);
    m_error = isDone ? QSqlError() : m_worker.lastError();
    return isDone;
}

bool QuietStatements::readNumber(const QString &statement, qint64 &number, const QVariantList &values)
{
    TableData table;
    const bool isRead = read(statement, table, values) && !table.isEmpty();
    if (isRead)
        number = table.constFirst()->at(0).toLongLong();
    freeRows(table);
    return isRead;
}

QString QuietStatements::reason() const
{
    const QString text = m_error.databaseText().trimmed();
    return text.isEmpty() ? m_error.driverText().trimmed() : text;
}

bool QuietStatements::isFatal() const
{
    // One place of a disk may be unreadable, where others do. After a spoilt page nothing is written.
    return isBusy() || (SqliteErrors::code(m_error) != SQLITE_IOERR_READ &&
                        SqliteErrors::isOneOf(m_error, {SQLITE_NOMEM, SQLITE_READONLY, SQLITE_IOERR,
                                                        SQLITE_FULL, SQLITE_CANTOPEN, SQLITE_CORRUPT}));
}

bool QuietStatements::isBusy() const
{
    return SqliteErrors::isBusy(m_error);
}

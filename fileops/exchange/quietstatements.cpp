#include "fileops/exchange/quietstatements.h"

#include "fileops/worker/fileoperationworker.h"

#include <QSignalBlocker>

#include <algorithm>
#include <iterator>

namespace {
// Result codes of SQLite, the low byte of extended ones.
constexpr int locked[] = {5, 6};
constexpr int lost[] = {7, 8, 10, 13, 14}; // memory, write permission, disk, room, opening
constexpr int unreadable = 266;            // one place of a disk, where others may do
} // namespace

bool QuietStatements::run(const QString &statement, const QVariantList &values)
{
    TableData table;
    const bool isDone = read(statement, table, values);
    freeRows(table);
    return isDone;
}

bool QuietStatements::read(const QString &statement, TableData &table, const QVariantList &values)
{
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

int QuietStatements::resultCode() const
{
    return m_error.nativeErrorCode().toInt();
}

bool QuietStatements::isFatal() const
{
    const int code = resultCode();
    const auto isPrimary = [code](int known) { return (code & 0xff) == known; };
    return isBusy() || (code != unreadable && std::any_of(std::begin(lost), std::end(lost), isPrimary));
}

bool QuietStatements::isBusy() const
{
    const int code = resultCode() & 0xff;
    return std::find(std::begin(locked), std::end(locked), code) != std::end(locked);
}

#include "db/sql/sqliteerrors.h"

#include <algorithm>

int SqliteErrors::code(const QSqlError &error)
{
    constexpr int signsOfServers = 5;
    const QString text = error.nativeErrorCode();
    return text.size() < signsOfServers ? text.toInt() : 0;
}

int SqliteErrors::primaryCode(const QSqlError &error)
{
    return code(error) & 0xff;
}

bool SqliteErrors::isOneOf(const QSqlError &error, std::initializer_list<int> primaryCodes)
{
    return std::find(primaryCodes.begin(), primaryCodes.end(), primaryCode(error)) != primaryCodes.end();
}

bool SqliteErrors::isBusy(const QSqlError &error)
{
    return isOneOf(error, {SQLITE_BUSY, SQLITE_LOCKED});
}

#include "db/sql/plainrows.h"

#include "db/sql/sqlitehandle.h"

#include <QSqlDatabase>

#include <sqlite3.h>

PlainRows::PlainRows(const QSqlDatabase &database, const char *statement)
{
    sqlite3 *handle = sqliteHandle(database);
    if (handle && sqlite3_prepare_v2(handle, statement, -1, &m_statement, nullptr) != SQLITE_OK)
        m_statement = nullptr;
}

PlainRows::~PlainRows()
{
    sqlite3_finalize(m_statement);
}

void PlainRows::start(qint64 first, qint64 second)
{
    sqlite3_reset(m_statement);
    sqlite3_bind_int64(m_statement, 1, first);
    sqlite3_bind_int64(m_statement, 2, second);
    m_hasFailed = false;
}

bool PlainRows::next()
{
    const int code = sqlite3_step(m_statement);
    m_hasFailed = code != SQLITE_ROW && code != SQLITE_DONE;
    return code == SQLITE_ROW;
}

bool PlainRows::finish()
{
    sqlite3_reset(m_statement);
    return !m_hasFailed;
}

qint64 PlainRows::number(int column) const
{
    return sqlite3_column_int64(m_statement, column);
}

const char *PlainRows::text(int column) const
{
    const auto *bytes = sqlite3_column_text(m_statement, column);
    return bytes ? reinterpret_cast<const char *>(bytes) : "";
}

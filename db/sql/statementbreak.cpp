#include "db/sql/statementbreak.h"

#include "db/sql/sqlitehandle.h"

#include <sqlite3.h>

namespace {
constexpr int stepsBetweenQuestions = 20000;
} // namespace

StatementBreak::StatementBreak(const QSqlDatabase &database, const std::function<bool()> &shouldEnd)
    : m_shouldEnd(shouldEnd), m_handle(sqliteHandle(database))
{
    if (m_handle)
        sqlite3_progress_handler(m_handle, stepsBetweenQuestions, &StatementBreak::ask, this);
}

StatementBreak::~StatementBreak()
{
    if (m_handle)
        sqlite3_progress_handler(m_handle, 0, nullptr, nullptr);
}

int StatementBreak::ask(void *self)
{
    return static_cast<StatementBreak *>(self)->m_shouldEnd() ? 1 : 0;
}

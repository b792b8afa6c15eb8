#include "db/sql/sqltextfunction.h"

#include "db/sql/sqlitehandle.h"

#include <QSqlDatabase>

#include <sqlite3.h>

#include <new>

namespace {
void call(sqlite3_context *context, int, sqlite3_value **values)
{
    const auto *self = static_cast<const SqlTextFunction *>(sqlite3_user_data(context));
    const auto *bytes = reinterpret_cast<const char *>(sqlite3_value_text(values[0]));
    if (!bytes)
        return; // NULL of NULL
    try {
        const QByteArray text = QByteArray::fromRawData(bytes, sqlite3_value_bytes(values[0]));
        const QByteArray result = self->function()(text);
        sqlite3_result_text(context, result.constData(), result.size(), SQLITE_TRANSIENT);
    } catch (const std::bad_alloc &) {
        sqlite3_result_error_nomem(context);
    }
}
} // namespace

SqlTextFunction::SqlTextFunction(const QSqlDatabase &database, const char *name, const Function &function)
    : m_handle(sqliteHandle(database)), m_name(name), m_function(function)
{
    // Nothing that stands in a database may call it.
    constexpr int flags = SQLITE_UTF8 | SQLITE_DIRECTONLY;
    if (m_handle)
        sqlite3_create_function_v2(m_handle, name, 1, flags, this, &call, nullptr, nullptr, nullptr);
}

SqlTextFunction::~SqlTextFunction()
{
    if (m_handle)
        sqlite3_create_function_v2(m_handle, m_name.constData(), 1, SQLITE_UTF8, nullptr, nullptr, nullptr,
                                   nullptr, nullptr);
}

#pragma once

#include <QByteArray>

#include <functional>

class QSqlDatabase;
struct sqlite3;

/**
 * A function from one text to another, both UTF-8, which statements on a local database may call by its name
 * while the object lives: a million rows that need it can stay one statement. On the thread of the
 * connection, and gone before that is closed; unknown to statements where SQLite is another library than the
 * driver's.
 */
class SqlTextFunction
{
public:
    /** The text is valid only during the call. It must not throw but for want of memory. */
    using Function = std::function<QByteArray(const QByteArray &)>;

    SqlTextFunction(const QSqlDatabase &database, const char *name, const Function &function);
    ~SqlTextFunction();
    SqlTextFunction(const SqlTextFunction &) = delete;
    SqlTextFunction &operator=(const SqlTextFunction &) = delete;

    const Function &function() const { return m_function; }

private:
    sqlite3 *m_handle;
    const QByteArray m_name;
    const Function m_function;
};

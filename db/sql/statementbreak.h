#pragma once

#include <functional>

class QSqlDatabase;
struct sqlite3;

/**
 * As long as it lives, a statement on a local database ends with an error soon after `shouldEnd` answers true:
 * for statements that read or write a million rows in one go. On the thread of the connection, and not beyond
 * its closing; no ReadBound on the same connection meanwhile.
 */
class StatementBreak
{
public:
    StatementBreak(const QSqlDatabase &database, const std::function<bool()> &shouldEnd);
    ~StatementBreak();
    StatementBreak(const StatementBreak &) = delete;
    StatementBreak &operator=(const StatementBreak &) = delete;

private:
    static int ask(void *self);

    std::function<bool()> m_shouldEnd;
    sqlite3 *m_handle; ///< null where nothing can be ended
};

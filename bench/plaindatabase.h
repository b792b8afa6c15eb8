#pragma once

#include <sqlite3.h>

#include <cstdio>
#include <cstdlib>
#include <ctime>

/** A plain database for the references: errors end the benchmark. */
class PlainDatabase
{
public:
    explicit PlainDatabase(const char *path) { check(sqlite3_open(path, &m_database)); }
    ~PlainDatabase() { sqlite3_close(m_database); }
    PlainDatabase(const PlainDatabase &) = delete;
    PlainDatabase &operator=(const PlainDatabase &) = delete;

    void run(const char *statement) { check(sqlite3_exec(m_database, statement, nullptr, nullptr, nullptr)); }
    sqlite3_stmt *prepare(const char *text)
    {
        sqlite3_stmt *statement = nullptr;
        check(sqlite3_prepare_v2(m_database, text, -1, &statement, nullptr));
        return statement;
    }
    /** Runs a prepared statement without rows and makes it ready for the next values. */
    void step(sqlite3_stmt *statement)
    {
        if (sqlite3_step(statement) != SQLITE_DONE)
            check(SQLITE_ERROR);
        sqlite3_reset(statement);
    }

private:
    void check(int code)
    {
        if (code == SQLITE_OK)
            return;
        std::fprintf(stderr, "sqlite: %s\n", sqlite3_errmsg(m_database));
        std::exit(1);
    }

    sqlite3 *m_database = nullptr;
};

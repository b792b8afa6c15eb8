#pragma once

#include <functional>

class QSqlDatabase;

/**
 * How statements on a local database wait for the locks of others: for as long as it is set, but only for a
 * moment once nobody wants them any more. On the thread of the connection.
 */
class LockWait
{
public:
    // What was done before a cancel is stored, and somebody may just be reading.
    static constexpr int unwantedMilliseconds = 400;

    /** As long as this lives, waits on its thread ask whether anybody wants them; they last a moment if not.
     */
    explicit LockWait(const std::function<bool()> &isUnwanted, int milliseconds = unwantedMilliseconds);
    ~LockWait();
    LockWait(const LockWait &) = delete;
    LockWait &operator=(const LockWait &) = delete;

    /** 0 for not at all. */
    static void set(const QSqlDatabase &database, int milliseconds);

private:
    static int wait(void *limit, int count);

    std::function<bool()> m_isUnwanted;
    int m_milliseconds;
    LockWait *m_outer;
};

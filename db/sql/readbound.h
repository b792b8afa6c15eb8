#pragma once

#include <QtGlobal>

class QSqlDatabase;
class QVariant;
struct sqlite3;

/**
 * As long as it lives, statements on a local database end that take more steps or more work, or give longer
 * texts, than reading all of its file could: pages of a damaged or crafted file may lead to each other, and
 * give rows without end. For looking at a file and reading all records only; on the thread of the connection,
 * one at a time, and not beyond its closing.
 */
class ReadBound
{
public:
    explicit ReadBound(const QSqlDatabase &database);
    ~ReadBound();
    ReadBound(const ReadBound &) = delete;
    ReadBound &operator=(const ReadBound &) = delete;

    /** A value was read on this thread. */
    static void count(const QVariant &value);

private:
    static int countDown(void *bound);

    sqlite3 *m_handle = nullptr; ///< null where nothing is bounded
    ReadBound *m_outer;          ///< of another connection
    qint64 m_stepsLeft = 0;
    qint64 m_lastNanosecond = 0; ///< of the thread's own time
    qint64 m_signsLeft = 0;
};

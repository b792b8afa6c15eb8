#include "db/sql/lockwait.h"

#include "db/sql/sqlitehandle.h"

#include <QElapsedTimer>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QThread>

#include <sqlite3.h>

#include <utility>

namespace {
constexpr int longestSleepMilliseconds = 50;

thread_local LockWait *innermost = nullptr;
thread_local QElapsedTimer waited;
} // namespace

LockWait::LockWait(const std::function<bool()> &isUnwanted, int milliseconds)
    : m_isUnwanted(isUnwanted), m_milliseconds(milliseconds), m_outer(std::exchange(innermost, this))
{
}

LockWait::~LockWait()
{
    innermost = m_outer;
}

void LockWait::set(const QSqlDatabase &database, int milliseconds)
{
    sqlite3 *handle = sqliteHandle(database);
    if (!handle)
        QSqlQuery(database).exec(QStringLiteral("PRAGMA busy_timeout=%1;").arg(milliseconds));
    else if (milliseconds > 0)
        sqlite3_busy_handler(handle, &LockWait::wait, reinterpret_cast<void *>(quintptr(milliseconds)));
    else
        sqlite3_busy_handler(handle, nullptr, nullptr);
}

int LockWait::wait(void *limit, int count)
{
    if (count == 0)
        waited.start();
    qint64 most = qint64(reinterpret_cast<quintptr>(limit));
    if (innermost && innermost->m_isUnwanted())
        most = qMin<qint64>(most, innermost->m_milliseconds);
    if (waited.elapsed() >= most)
        return 0;
    QThread::msleep(ulong(qMin(1 << qMin(count, 6), longestSleepMilliseconds)));
    return 1;
}

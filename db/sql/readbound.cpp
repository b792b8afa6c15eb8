#include "db/sql/readbound.h"

#include "db/sql/sqlitehandle.h"

#include <QFileInfo>
#include <QSqlDatabase>
#include <QVariant>

#include <ctime>
#include <sqlite3.h>

#include <utility>

namespace {
// Large good databases take less than one for each byte.
constexpr qint64 stepsPerByte = 4;
constexpr qint64 stepsOfAnyFile = 2000000;
constexpr int stepsBetweenLooks = 1000;
// A name comes with each record that refers to it.
constexpr qint64 signsPerByte = 4;
constexpr qint64 signsOfAnyFile = 16 << 20;

// Sorting rows of long texts takes few steps and gives none until its end. Waiting for a disk is no work.
constexpr qint64 nanosecondsPerByte = 500;
constexpr qint64 nanosecondsOfAnyFile = 5000000000;

qint64 workOfThread()
{
    timespec time = {};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return time.tv_sec * 1000000000LL + time.tv_nsec;
}

thread_local ReadBound *innermost = nullptr;
} // namespace

ReadBound::ReadBound(const QSqlDatabase &database)
    : m_handle(sqliteHandle(database)), m_outer(std::exchange(innermost, this))
{
    const QString path = database.databaseName();
    const qint64 bytes = QFileInfo(path).size() + QFileInfo(path + QLatin1String("-wal")).size();
    m_stepsLeft = stepsOfAnyFile + stepsPerByte * bytes;
    m_signsLeft = signsOfAnyFile + signsPerByte * bytes;
    m_lastNanosecond = workOfThread() + nanosecondsOfAnyFile + nanosecondsPerByte * bytes;
    if (m_handle)
        sqlite3_progress_handler(m_handle, stepsBetweenLooks, &ReadBound::countDown, this);
}

ReadBound::~ReadBound()
{
    innermost = m_outer;
    if (m_handle)
        sqlite3_progress_handler(m_handle, 0, nullptr, nullptr);
}

void ReadBound::count(const QVariant &value)
{
    if (innermost && value.type() == QVariant::String)
        innermost->m_signsLeft -= value.toString().size();
    else if (innermost && value.type() == QVariant::ByteArray)
        innermost->m_signsLeft -= value.toByteArray().size();
}

int ReadBound::countDown(void *bound)
{
    auto *self = static_cast<ReadBound *>(bound);
    self->m_stepsLeft -= stepsBetweenLooks;
    const bool isBeyond =
        self->m_stepsLeft < 0 || self->m_signsLeft < 0 || workOfThread() > self->m_lastNanosecond;
    return isBeyond ? 1 : 0;
}

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
// For a transaction that is in the cache still, of four times the size and at a step for each byte.
constexpr qint64 unwrittenBytes = 16 << 20;

qint64 workOfThread()
{
    timespec time = {};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return time.tv_sec * 1000000000LL + time.tv_nsec;
}

thread_local ReadBound *innermost = nullptr;
} // namespace

ReadBound::ReadBound(const QSqlDatabase &database, Scope scope)
    : m_scope(scope),
      m_path(database.databaseName()),
      m_bytes(fileSize()),
      m_handle(sqliteHandle(database)),
      m_outer(std::exchange(innermost, this))
{
    grant(m_bytes);
    if (m_handle)
        sqlite3_progress_handler(m_handle, stepsBetweenLooks, &ReadBound::countDown, this);
}

ReadBound::~ReadBound()
{
    innermost = m_outer;
    if (m_handle)
        sqlite3_progress_handler(m_handle, 0, nullptr, nullptr);
}

qint64 ReadBound::fileSize() const
{
    return QFileInfo(m_path).size() + QFileInfo(m_path + QLatin1String("-wal")).size();
}

void ReadBound::grant(qint64 bytes)
{
    const qint64 unwritten = m_scope == EachStatement ? unwrittenBytes : 0;
    m_stepsLeft = stepsOfAnyFile + stepsPerByte * (bytes + unwritten);
    m_signsLeft = signsOfAnyFile + signsPerByte * (bytes + unwritten);
    m_workLeft = nanosecondsOfAnyFile + nanosecondsPerByte * bytes;
    // Asking for the time takes as long as a small statement.
    m_lastNanosecond = 0;
}

void ReadBound::count(const QVariant &value)
{
    if (innermost && value.type() == QVariant::String)
        innermost->m_signsLeft -= value.toString().size();
    else if (innermost && value.type() == QVariant::ByteArray)
        innermost->m_signsLeft -= value.toByteArray().size();
}

void ReadBound::countCharacters(int characters)
{
    if (innermost)
        innermost->m_signsLeft -= characters;
}

void ReadBound::beginStatement(int length)
{
    if (innermost && innermost->m_scope == EachStatement)
        innermost->grant(innermost->m_bytes + length);
}

bool ReadBound::isBeyond() const
{
    return m_stepsLeft < 0 || m_signsLeft < 0 || workOfThread() > m_lastNanosecond;
}

bool ReadBound::hasFileGrown()
{
    const qint64 before = std::exchange(m_bytes, fileSize());
    if (m_scope == AllStatements || m_bytes <= before)
        return false;
    grant(m_bytes);
    return true;
}

int ReadBound::countDown(void *bound)
{
    auto *self = static_cast<ReadBound *>(bound);
    self->m_stepsLeft -= stepsBetweenLooks;
    if (self->m_lastNanosecond == 0)
        self->m_lastNanosecond = workOfThread() + self->m_workLeft;
    return self->isBeyond() && !self->hasFileGrown() ? 1 : 0;
}

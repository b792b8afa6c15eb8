#include "db/sql/foreignwrites.h"

#include <QElapsedTimer>
#include <QSemaphore>
#include <QSignalBlocker>

#include <memory>

namespace {
// The window answers from its event loop, which a large merge or reload may keep from turning.
constexpr int patienceMilliseconds = 20000;
constexpr int pollMilliseconds = 10;
constexpr int settlingMilliseconds = 200; // an edit stands still for it
} // namespace

ForeignWrites::ForeignWrites(QObject *parent) : BaseDBProvider(nullptr, parent) {}

bool ForeignWrites::readVersion(BaseDBProvider &provider, const QString &connectionName, qint64 &version)
{
    static const QString statement = QStringLiteral("PRAGMA data_version;");
    TableData table;
    const bool isRead = provider.runPrepared(statement, {}, table, connectionName) && !table.isEmpty();
    if (isRead)
        version = table.constFirst()->at(0).toLongLong();
    freeRows(table);
    return isRead;
}

bool ForeignWrites::noteState()
{
    qint64 version = 0;
    if (!readVersion(*this, QString(), version))
        return false;
    const QMutexLocker locker(&m_mutex);
    m_version = version;
    m_isTrusted = true;
    return true;
}

bool ForeignWrites::mayWrite()
{
    // Before the look: a commit that is settled after it must not pass for another program's.
    bool isWorkerCommitting = false;
    {
        const QMutexLocker locker(&m_mutex);
        isWorkerCommitting = m_isWorkerCommitting;
    }
    qint64 version = 0;
    if (!readVersion(*this, QString(), version))
        return false;
    {
        const QMutexLocker locker(&m_mutex);
        if (m_isTrusted && (m_version < 0 || version == m_version))
            return true;
        isWorkerCommitting = m_isTrusted && (isWorkerCommitting || m_isWorkerCommitting);
    }
    if (!isWorkerCommitting)
        emit newsFound();
    else if (settleHere())
        return mayWrite();
    else
        emit busyFound();
    return false;
}

bool ForeignWrites::isWorkerCommitting()
{
    const QMutexLocker locker(&m_mutex);
    return m_isWorkerCommitting;
}

bool ForeignWrites::settleHere()
{
    QElapsedTimer waited;
    waited.start();
    QMutexLocker locker(&m_mutex);
    while (m_isWorkerCommitting && !waited.hasExpired(settlingMilliseconds)) {
        if (m_isLookWanted) {
            locker.unlock();
            lookAtCommit();
            locker.relock();
        }
        if (m_isWorkerCommitting)
            m_changed.wait(&m_mutex, pollMilliseconds);
    }
    return !m_isWorkerCommitting;
}

void ForeignWrites::lookAtCommit()
{
    QMutexLocker locker(&m_mutex);
    if (!m_isLookWanted)
        return;
    locker.unlock();
    qint64 version = 0;
    const bool isRead = readVersion(*this, QString(), version);
    locker.relock();
    m_seenVersion = version;
    m_isLookTaken = isRead;
    m_isLookWanted = false;
    m_changed.wakeAll();
}

void ForeignWrites::changesUndone()
{
    const auto look = [this] {
        qint64 version = 0;
        {
            // What is in the way is told by the next edit.
            const QSignalBlocker silence(this);
            // This object, whatever the analyzer takes it for.
            // NOLINTNEXTLINE(clang-analyzer-core.NonNullParamChecker)
            if (!readVersion(*this, QString(), version))
                return;
        }
        QMutexLocker locker(&m_mutex);
        const bool isKnown = m_version < 0 || version == m_version || m_isWorkerCommitting;
        locker.unlock();
        if (!isKnown)
            emit outdated();
    };
    QMetaObject::invokeMethod(this, look, Qt::QueuedConnection);
}

bool ForeignWrites::isWindowCurrent(const std::function<bool()> &shouldEnd)
{
    return ask([this] { return mayWrite(); }, shouldEnd);
}

void ForeignWrites::announceCommit()
{
    const QMutexLocker locker(&m_mutex);
    m_isWorkerCommitting = true;
}

void ForeignWrites::commitFailed()
{
    const QMutexLocker locker(&m_mutex);
    m_isWorkerCommitting = false;
    m_changed.wakeAll();
}

bool ForeignWrites::showCommit(const std::function<bool()> &shouldEnd)
{
    QMutexLocker locker(&m_mutex);
    m_isLookWanted = true;
    m_isLookTaken = false;
    m_changed.wakeAll();
    QMetaObject::invokeMethod(this, &ForeignWrites::lookAtCommit, Qt::QueuedConnection);
    QElapsedTimer waited;
    waited.start();
    while (m_isLookWanted && !shouldEnd() && !waited.hasExpired(patienceMilliseconds))
        m_changed.wait(&m_mutex, pollMilliseconds);
    if (m_isLookWanted && !shouldEnd())
        distrust();
    // A look that comes later would be that of another commit.
    m_isLookWanted = false;
    return m_isLookTaken;
}

void ForeignWrites::settleCommit(bool isOwn)
{
    const QMutexLocker locker(&m_mutex);
    if (isOwn)
        m_version = m_seenVersion;
    m_isTrusted = m_isTrusted && isOwn;
    m_isWorkerCommitting = false;
    m_changed.wakeAll();
}

bool ForeignWrites::ask(const std::function<bool()> &question, const std::function<bool()> &shouldEnd)
{
    struct Answer
    {
        QSemaphore isThere;
        bool isYes = false;
    };
    const auto answer = std::make_shared<Answer>();
    QMetaObject::invokeMethod(
        this,
        [question, answer] {
            answer->isYes = question();
            answer->isThere.release();
        },
        Qt::QueuedConnection);
    QElapsedTimer waited;
    waited.start();
    while (!answer->isThere.tryAcquire(1, pollMilliseconds)) {
        if (shouldEnd())
            return false;
        if (waited.hasExpired(patienceMilliseconds)) {
            distrust();
            return false;
        }
    }
    return answer->isYes;
}

void ForeignWrites::distrust()
{
    QMetaObject::invokeMethod(
        this,
        [this] {
            {
                const QMutexLocker locker(&m_mutex);
                // This object, whatever the analyzer takes it for.
                // NOLINTNEXTLINE(clang-analyzer-core.NullDereference)
                m_isTrusted = false;
            }
            emit newsFound();
        },
        Qt::QueuedConnection);
}

#include "fileops/looks/backgroundlooks.h"

#include "app/settings/crashstack.h"

#include <QElapsedTimer>
#include <QMutex>
#include <QQueue>
#include <QWaitCondition>

#include <atomic>
#include <thread>

namespace {
// Within what nobody notices.
constexpr int partingMilliseconds = 50;
} // namespace

/** What the thread knows; it outlives the owner while a look does not come back. */
struct BackgroundLooks::Shared
{
    struct Entry
    {
        quint64 turn = 0;
        Job job;
    };

    QMutex mutex;
    QWaitCondition idle;
    BackgroundLooks *owner = nullptr; ///< null once it has ended
    QQueue<Entry> queue;
    bool isWorking = false;
    std::atomic<quint64> turn{0}; ///< what was begun in an earlier one is forgotten
};

BackgroundLooks::BackgroundLooks(QObject *parent) : QObject(parent), m_shared(std::make_shared<Shared>())
{
    m_shared->owner = this;
}

BackgroundLooks::~BackgroundLooks()
{
    end();
}

void BackgroundLooks::start(const Job &job)
{
    const QMutexLocker locker(&m_shared->mutex);
    if (!m_shared->owner)
        return;
    m_shared->queue.enqueue({m_shared->turn, job});
    if (m_shared->isWorking)
        return;
    m_shared->isWorking = true;
    std::thread([shared = m_shared] { work(shared); }).detach();
}

void BackgroundLooks::work(const std::shared_ptr<Shared> &shared)
{
    provideCrashStack();
    QMutexLocker locker(&shared->mutex);
    while (!shared->queue.isEmpty()) {
        const Shared::Entry entry = shared->queue.dequeue();
        locker.unlock();
        const auto isForgotten = [shared, turn = entry.turn] { return shared->turn != turn; };
        const std::function<void()> take = entry.job(isForgotten);
        locker.relock();
        if (!shared->owner || isForgotten())
            continue;
        const auto hand = [take, isForgotten] {
            if (!isForgotten())
                take();
        };
        QMetaObject::invokeMethod(shared->owner, hand, Qt::QueuedConnection);
    }
    shared->isWorking = false;
    shared->idle.wakeAll();
}

void BackgroundLooks::forget()
{
    const QMutexLocker locker(&m_shared->mutex);
    m_shared->turn = m_shared->turn + 1;
    m_shared->queue.clear();
}

void BackgroundLooks::end()
{
    forget();
    QMutexLocker locker(&m_shared->mutex);
    m_shared->owner = nullptr;
    QElapsedTimer waited;
    waited.start();
    while (m_shared->isWorking && !waited.hasExpired(partingMilliseconds))
        m_shared->idle.wait(&m_shared->mutex, partingMilliseconds);
}

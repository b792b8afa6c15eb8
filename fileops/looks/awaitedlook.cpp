#include "fileops/looks/awaitedlook.h"

#include "app/settings/crashstack.h"

#include <QElapsedTimer>

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <thread>

namespace {
constexpr std::chrono::milliseconds betweenQuestions(10);

/** What both sides know; it lasts as long as the longer of them. */
struct Shared
{
    std::mutex mutex;
    std::condition_variable done;
    bool isDone = false;
    std::atomic<bool> isLeft{false};
    std::atomic<quint64> signs{0};
};
} // namespace

bool AwaitedLook::runJob(const std::function<void(const ShouldEnd &)> &job, const IsUnwanted &isUnwanted)
{
    const auto shared = std::make_shared<Shared>();
    std::thread([shared, job] {
        provideCrashStack();
        job([&shared = *shared] {
            shared.signs.fetch_add(1, std::memory_order_relaxed);
            return shared.isLeft.load();
        });
        const std::lock_guard<std::mutex> lock(shared->mutex);
        shared->isDone = true;
        shared->done.notify_all();
    }).detach();
    quint64 seen = 0;
    QElapsedTimer silence;
    silence.start();
    std::unique_lock<std::mutex> lock(shared->mutex);
    while (!shared->done.wait_for(lock, betweenQuestions, [&shared] { return shared->isDone; })) {
        const quint64 signs = shared->signs;
        if (signs != seen)
            silence.restart();
        seen = signs;
        lock.unlock();
        shared->isLeft = isUnwanted() || silence.hasExpired(patienceMilliseconds);
        lock.lock();
        if (shared->isLeft && !shared->isDone)
            return false;
    }
    return true;
}

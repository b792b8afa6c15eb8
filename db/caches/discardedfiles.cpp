#include "db/caches/discardedfiles.h"

#include "app/settings/crashstack.h"
#include "core/records/file.h"

#include <QMap>

#include <atomic>
#include <condition_variable>
#include <list>
#include <mutex>
#include <thread>
#include <utility>

namespace {
// So many are gone sooner than a thread is told of them.
constexpr int fewFiles = 1000;

/** The thread, from the first large lot on, with what it has to do. */
class Remover
{
public:
    ~Remover();
    void add(const QMap<qint64, File *> &files, const QList<File *> &others, const QSet<qint64> &ids);
    bool isIdle();

private:
    // The analyzer does not follow the counts of shared maps. NOLINTNEXTLINE(clang-analyzer-unix.Malloc)
    struct Lot
    {
        QMap<qint64, File *> files;
        QList<File *> others;
        QSet<qint64> ids;
    };

    void run();
    template <typename Files>
    void free(const Files &files);

    std::mutex m_mutex; ///< of what follows, down to the thread
    std::condition_variable m_changed;
    std::list<Lot> m_lots;
    bool m_isWorking = false;
    std::thread m_thread;
    std::atomic<bool> m_isEnding{false};
    Lot m_current; ///< the thread's own
};

Remover::~Remover()
{
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        // Behind the lock, or the thread could miss it between its look and its wait.
        m_isEnding = true;
    }
    m_changed.notify_all();
    if (m_thread.joinable())
        m_thread.join();
}

void Remover::add(const QMap<qint64, File *> &files, const QList<File *> &others, const QSet<qint64> &ids)
{
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_lots.push_back({files, others, ids});
        if (!m_thread.joinable())
            m_thread = std::thread([this] { run(); });
    }
    m_changed.notify_all();
}

bool Remover::isIdle()
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_lots.empty() && !m_isWorking;
}

void Remover::run()
{
    provideCrashStack();
    std::unique_lock<std::mutex> lock(m_mutex);
    while (!m_isEnding) {
        // The analyzer does not follow the counts of shared maps. NOLINTNEXTLINE(clang-analyzer-unix.Malloc)
        m_isWorking = !m_lots.empty();
        if (!m_isWorking) {
            m_changed.wait(lock);
            continue;
        }
        m_current = std::move(m_lots.front());
        m_lots.pop_front();
        lock.unlock();
        // Without the lock: adding more must not wait for a million deletions.
        free(m_current.files);
        // The analyzer does not follow the counts of shared maps. NOLINTNEXTLINE(clang-analyzer-unix.Malloc)
        free(m_current.others);
        // At the end of the program the system frees the rest sooner.
        if (!m_isEnding)
            m_current = Lot();
        lock.lock();
    }
}

template <typename Files>
void Remover::free(const Files &files)
{
    for (auto file = files.cbegin(); file != files.cend() && !m_isEnding; ++file)
        delete *file;
}

Remover &remover()
{
    static Remover remover;
    return remover;
}
} // namespace

namespace DiscardedFiles {
void add(const QList<File *> &files)
{
    if (files.size() <= fewFiles)
        qDeleteAll(files);
    else
        remover().add({}, files, {});
}

void add(Map<qint64, File *> &files, QSet<qint64> &ids)
{
    // Shared, not copied; the thread drops the last hold on it.
    const QMap<qint64, File *> items = files.items();
    files.clear();
    if (items.size() <= fewFiles)
        qDeleteAll(items);
    else
        remover().add(items, {}, std::exchange(ids, {}));
    ids.clear();
}

bool isEmpty()
{
    return remover().isIdle();
}
} // namespace DiscardedFiles

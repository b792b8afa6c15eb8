#include "db/loading/fileloader.h"

#include "app/settings/crashstack.h"

#include <QMutexLocker>

#include <utility>

namespace {
// Batches: the thread must not read a million files ahead of a window that takes its time.
constexpr size_t mostWaiting = 16;
} // namespace

FileLoader::FileLoader(std::unique_ptr<FileSource> source) : m_source(std::move(source)) {}

FileLoader::~FileLoader()
{
    // First the source, which may stand in a long read, then the thread, which may wait for room.
    m_source->cancel();
    {
        const QMutexLocker locker(&m_mutex);
        m_isUnwanted = true;
        m_changed.wakeAll();
    }
    wait();
}

void FileLoader::run()
{
    provideCrashStack();
    const bool hasBegun = m_source->begin();
    bool isWanted = true;
    while (hasBegun && isWanted) {
        FileBatch batch;
        if (!m_source->read(batch))
            break;
        isWanted = put(std::move(batch));
    }
    m_isWhole = hasBegun && isWanted && !m_source->error().isValid() && !m_source->isConnectionLost();
    m_source->end();
    {
        const QMutexLocker locker(&m_mutex);
        m_isEnded = true;
        m_changed.wakeAll();
    }
    // Also without a batch, so that the end is noticed.
    emit arrived();
}

/** False when nobody wants more. */
bool FileLoader::put(FileBatch &&batch)
{
    bool isFirst = false;
    {
        QMutexLocker locker(&m_mutex);
        while (m_waiting.size() >= mostWaiting && !m_isUnwanted)
            m_changed.wait(&m_mutex);
        if (m_isUnwanted)
            return false;
        // Told for the first one alone: whoever hears of it takes all that there are.
        isFirst = m_waiting.empty();
        m_waiting.push_back(std::move(batch));
        m_changed.wakeAll();
    }
    if (isFirst)
        emit arrived();
    return true;
}

bool FileLoader::takeLocked(FileBatch &batch)
{
    if (m_waiting.empty())
        return false;
    batch = std::move(m_waiting.front());
    m_waiting.pop_front();
    m_changed.wakeAll();
    return true;
}

bool FileLoader::take(FileBatch &batch)
{
    const QMutexLocker locker(&m_mutex);
    return takeLocked(batch);
}

bool FileLoader::waitFor(FileBatch &batch)
{
    const QMutexLocker locker(&m_mutex);
    while (m_waiting.empty() && !m_isEnded)
        m_changed.wait(&m_mutex);
    return takeLocked(batch);
}

bool FileLoader::isOver()
{
    const QMutexLocker locker(&m_mutex);
    return m_isEnded && m_waiting.empty();
}

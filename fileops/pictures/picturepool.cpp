#include "fileops/pictures/picturepool.h"

#include "app/settings/crashstack.h"
#include "fileops/pictures/picturedecoder.h"
#include "fileops/pictures/thumbnailmaker.h"

#include <QCoreApplication>
#include <QThread>

namespace {
constexpr qint64 megabyte = 1024LL * 1024;
} // namespace

PicturePool &PicturePool::instance()
{
    // Never destroyed: threads may still ask while the process ends. The application's end shuts it down.
    static PicturePool &pool = *new PicturePool;
    return pool;
}

// A thumbnail of 200 million pixels takes two seconds at most, and a batch waits for each that does not end.
PicturePool::PicturePool() : m_limits{{768 * megabyte, 3, 12}, {1664 * megabyte, 30}, {768 * megabyte, 10}}
{
    m_threads.setMaxThreadCount(qMax(1, QThread::idealThreadCount()));
    // A child ends with the thread that has started it.
    m_threads.setExpiryTimeout(-1);
    qAddPostRoutine([] { instance().shutDown(); });
}

void PicturePool::shutDown()
{
    m_isEnding = true;
    m_threads.waitForDone();
    const QMutexLocker locker(&m_mutex);
    m_idle.clear();
}

void PicturePool::start(const PictureTaskPointer &task, Urgency urgency)
{
    const auto run = [this, task] {
        provideCrashStack();
        serve(*task);
    };
    m_threads.start(QRunnable::create(run), int(urgency));
}

PictureAnswer PicturePool::read(const PictureRequest &request)
{
    const auto task = PictureTaskPointer::create(request);
    // Whoever waits is not to wait for the pictures of others, too: one more is read as long as this one is.
    m_threads.releaseThread();
    start(task, BeforeOthers);
    PictureAnswer answer = task->waitedFor();
    m_threads.reserveThread();
    return answer;
}

void PicturePool::setLimits(PictureUse use, const PictureLimits &limits)
{
    const QMutexLocker locker(&m_mutex);
    m_limits[int(use)] = limits;
}

PictureLimits PicturePool::limitsOf(PictureUse use) const
{
    const QMutexLocker locker(&m_mutex);
    return m_limits[int(use)];
}

void PicturePool::serve(PictureTask &task)
{
    PictureAnswer answer;
    const auto isWanted = [this, &task] { return !m_isEnding && !task.isCanceled(); };
    if (!isWanted()) {
        answer.state = PictureAnswer::Canceled;
    } else if (m_failed.contains(task.request())) {
        answer.state = PictureAnswer::Failed;
    } else {
        std::unique_ptr<PictureDecoder> decoder = takeDecoder();
        answer = decoder->read(task.request(), limitsOf(task.request().use), isWanted);
        putBack(std::move(decoder));
        if (answer.state == PictureAnswer::Failed)
            m_failed.add(task.request(), answer.stamp);
        // Here, where as many are made at once as there are cores: it takes longer than all of their rows.
        if (task.request().isStored) {
            answer.png = ThumbnailMaker::encoded(answer.image);
            answer.image = QImage();
        }
    }
    task.finish(answer);
}

std::unique_ptr<PictureDecoder> PicturePool::takeDecoder()
{
    const QMutexLocker locker(&m_mutex);
    if (m_idle.empty())
        return std::make_unique<PictureDecoder>();
    std::unique_ptr<PictureDecoder> decoder = std::move(m_idle.back());
    m_idle.pop_back();
    return decoder;
}

void PicturePool::putBack(std::unique_ptr<PictureDecoder> decoder)
{
    const QMutexLocker locker(&m_mutex);
    if (decoder->isRunning() && int(m_idle.size()) < width())
        m_idle.push_back(std::move(decoder));
}

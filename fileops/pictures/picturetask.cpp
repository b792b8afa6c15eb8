#include "fileops/pictures/picturetask.h"

void PictureTask::cancel()
{
    const QMutexLocker locker(&m_mutex);
    m_isCanceled = true;
}

bool PictureTask::isCanceled() const
{
    const QMutexLocker locker(&m_mutex);
    return m_isCanceled;
}

bool PictureTask::wait(int milliseconds)
{
    const QMutexLocker locker(&m_mutex);
    if (!m_isDone)
        m_done.wait(&m_mutex, static_cast<unsigned long>(milliseconds));
    return m_isDone;
}

PictureAnswer PictureTask::answer() const
{
    const QMutexLocker locker(&m_mutex);
    return m_answer;
}

PictureAnswer PictureTask::waitedFor()
{
    const QMutexLocker locker(&m_mutex);
    while (!m_isDone)
        m_done.wait(&m_mutex);
    return m_answer;
}

void PictureTask::finish(const PictureAnswer &answer)
{
    {
        const QMutexLocker locker(&m_mutex);
        m_answer = answer;
        m_isDone = true;
        m_done.wakeAll();
    }
    emit finished();
}

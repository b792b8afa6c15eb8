#pragma once

#include "fileops/pictures/failedpictures.h"
#include "fileops/pictures/picturetask.h"

#include <QThreadPool>

#include <atomic>
#include <memory>
#include <vector>

class PictureDecoder;

/**
 * Reads pictures in child processes, one a core: they start when they are first needed and stay until the
 * application object goes. Each is served by one of as many threads, which wait for it. Any thread.
 */
class PicturePool
{
public:
    enum Urgency { InTurn, BeforeOthers };

    static PicturePool &instance();

    /** Begins, or queues, the reading of a picture. */
    void start(const PictureTaskPointer &task, Urgency urgency = InTurn);
    /** The same, waiting for the answer. */
    PictureAnswer read(const PictureRequest &request);
    /** How many pictures are read at once. */
    int width() const { return m_threads.maxThreadCount(); }

    /** In place of the limits that a use has by itself. */
    void setLimits(PictureUse use, const PictureLimits &limits);

private:
    PicturePool();
    void shutDown();
    void serve(PictureTask &task);
    PictureLimits limitsOf(PictureUse use) const;
    std::unique_ptr<PictureDecoder> takeDecoder();
    void putBack(std::unique_ptr<PictureDecoder> decoder);

    QThreadPool m_threads;
    FailedPictures m_failed;
    std::atomic<bool> m_isEnding = false;
    mutable QMutex m_mutex;
    std::vector<std::unique_ptr<PictureDecoder>> m_idle;
    PictureLimits m_limits[3];
};

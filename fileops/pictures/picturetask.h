#pragma once

#include "fileops/pictures/picturerequest.h"

#include <QMutex>
#include <QObject>
#include <QSharedPointer>
#include <QWaitCondition>

/**
 * A picture that is being read, or waits for it, held by the one who wants it and by the pool. Any thread;
 * `finished` comes from one of the pool's.
 */
class PictureTask : public QObject
{
    Q_OBJECT

public:
    explicit PictureTask(const PictureRequest &request) : m_request(request) {}

    const PictureRequest &request() const { return m_request; }
    /** Nobody wants it any more: what reads it is stopped. */
    void cancel();
    bool isCanceled() const;
    /** True once there is an answer; waits for it no longer than this. */
    bool wait(int milliseconds);
    /** Of a task that has finished. */
    PictureAnswer answer() const;
    /** Waits as long as it takes. */
    PictureAnswer waitedFor();

    /** For the pool. */
    void finish(const PictureAnswer &answer);

signals:
    void finished();

private:
    const PictureRequest m_request;
    mutable QMutex m_mutex;
    QWaitCondition m_done;
    PictureAnswer m_answer;
    bool m_isCanceled = false;
    bool m_isDone = false;
};

using PictureTaskPointer = QSharedPointer<PictureTask>;

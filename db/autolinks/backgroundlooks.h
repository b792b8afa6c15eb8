#pragma once

#include "app/settings/crashstack.h"

#include <QObject>
#include <QThreadPool>

#include <atomic>
#include <memory>

/**
 * Runs what looks at disks beside the thread of its owner, one after the other, as a disk that sleeps or is
 * behind a network may let a look wait for long. What a look found is handed over on the owner's thread.
 */
class BackgroundLooks : public QObject
{
    Q_OBJECT

public:
    explicit BackgroundLooks(QObject *parent = nullptr) : QObject(parent) { m_pool.setMaxThreadCount(1); }
    ~BackgroundLooks() override { end(); }

    /** `look` gives a value, and asks shouldEnd() as often as it can; `take` gets the value, or never runs.
     */
    template <class Look, class Take>
    void run(const Look &look, const Take &take)
    {
        m_pool.start([this, look, take] {
            provideCrashStack();
            const auto found = std::make_shared<decltype(look())>(look());
            QMetaObject::invokeMethod(
                this,
                [this, found, take] {
                    if (!shouldEnd())
                        take(*found);
                },
                Qt::QueuedConnection);
        });
    }
    /** Nothing is taken any more; waits for the running look. */
    void end()
    {
        m_isEnding = true;
        m_pool.clear();
        m_pool.waitForDone();
    }
    /** Any thread. */
    bool shouldEnd() const { return m_isEnding; }

private:
    QThreadPool m_pool;
    std::atomic<bool> m_isEnding{false};
};

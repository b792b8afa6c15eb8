#include "app/window/idlesteps.h"

#include <QThread>
#include <QTimer>

void IdleSteps::run(const std::function<void()> &step)
{
    runAfter(0, step);
}

void IdleSteps::runAfter(int milliseconds, const std::function<void()> &step)
{
    constexpr int retryMilliseconds = 50;
    QTimer::singleShot(milliseconds, this, [this, step] {
        if (m_isHeld || QThread::currentThread()->loopLevel() > 1)
            runAfter(retryMilliseconds, step);
        else
            step();
    });
}

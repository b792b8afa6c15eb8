#include "bench/settling.h"

#include "bench/measure.h"

#include <QElapsedTimer>
#include <QEventLoop>
#include <QTimer>

#include <algorithm>
#include <cstdio>
#include <fcntl.h>
#include <unistd.h>

namespace {

constexpr int pulseMilliseconds = 1;
constexpr int quietPulses = 40;
// A pulse that took more than this of CPU had work in it.
constexpr double workSeconds = 0.0004;

/** How long this thread was ready to run while others had the processors: no time of ours. Linux. */
class WaitingTime
{
public:
    WaitingTime() : m_descriptor(open("/proc/thread-self/schedstat", O_RDONLY)) {}
    ~WaitingTime() { close(m_descriptor); }
    WaitingTime(const WaitingTime &) = delete;
    WaitingTime &operator=(const WaitingTime &) = delete;

    double seconds() const
    {
        char text[128] = {};
        unsigned long long run = 0;
        unsigned long long waited = 0;
        if (pread(m_descriptor, text, sizeof text - 1, 0) > 0)
            std::sscanf(text, "%llu %llu", &run, &waited);
        return double(waited) / 1e9;
    }

private:
    int m_descriptor;
};

class Pulse : public QObject
{
public:
    explicit Pulse(const std::function<bool()> &isBusy) : m_isBusy(isBusy)
    {
        m_clock.start();
        m_timer.setTimerType(Qt::PreciseTimer);
        connect(&m_timer, &QTimer::timeout, this, &Pulse::beat);
    }

    Settling::Cost follow(const std::function<void()> &action)
    {
        m_startCpu = m_lastCpu = Measure::cpuSeconds();
        m_start = m_last = now();
        m_timer.start(pulseMilliseconds);
        QTimer::singleShot(0, &m_loop, [this, &action] {
            action();
            m_hasActed = true;
        });
        m_loop.exec();
        return m_cost;
    }

private:
    double now() const { return double(m_clock.nsecsElapsed()) / 1e9 - m_waiting.seconds(); }

    void beat()
    {
        const double cpu = Measure::cpuSeconds();
        const double time = now();
        m_cost.freezeSeconds = std::max(m_cost.freezeSeconds, time - m_last);
        m_quiet = m_hasActed || m_isBusy() || cpu - m_lastCpu > workSeconds ? 0 : m_quiet + 1;
        if (m_quiet == 0) {
            m_cost.cpuSeconds = cpu - m_startCpu;
            m_cost.wallSeconds = time - m_start;
        }
        m_hasActed = false;
        m_last = time;
        m_lastCpu = cpu;
        if (m_quiet >= quietPulses)
            m_loop.quit();
    }

    std::function<bool()> m_isBusy;
    QElapsedTimer m_clock;
    WaitingTime m_waiting;
    QTimer m_timer;
    QEventLoop m_loop;
    Settling::Cost m_cost;
    double m_start = 0;
    double m_startCpu = 0;
    double m_last = 0;
    double m_lastCpu = 0;
    int m_quiet = 0;
    bool m_hasActed = false;
};

} // namespace

Settling::Cost Settling::run(const std::function<void()> &action, const std::function<bool()> &isBusy)
{
    return Pulse(isBusy).follow(action);
}

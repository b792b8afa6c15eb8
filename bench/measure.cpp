#include "bench/measure.h"

#include <QByteArray>
#include <QFile>

#include <ctime>

namespace {
qint64 statusBytes(const QByteArray &name)
{
    QFile status(QStringLiteral("/proc/self/status"));
    status.open(QIODevice::ReadOnly);
    for (const QByteArray &line : status.readAll().split('\n')) {
        if (line.startsWith(name))
            return line.mid(name.size()).simplified().split(' ').first().toLongLong() * 1024;
    }
    return 0;
}
} // namespace

double Measure::cpuSeconds()
{
    timespec now{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
    return double(now.tv_sec) + double(now.tv_nsec) / 1e9;
}

qint64 Measure::residentBytes()
{
    return statusBytes("VmRSS:");
}

qint64 Measure::peakBytes()
{
    return statusBytes("VmHWM:");
}

void Measure::resetPeak()
{
    QFile references(QStringLiteral("/proc/self/clear_refs"));
    if (references.open(QIODevice::WriteOnly))
        references.write("5");
}

int Measure::amount(int full)
{
    return qEnvironmentVariableIsSet("VORNA_BENCH_TRIAL") ? qMax(1, full / 100) : full;
}

#pragma once

#include "bench/measure.h"

#include <QElapsedTimer>

#include <algorithm>
#include <cstdio>

/** What one run took; of several the least. */
struct Cost
{
    double cpu = 0;
    double wall = 0;
    qint64 memory = 0; ///< the most that the process had meanwhile

    template <class Work>
    static Cost of(const Work &work)
    {
        Measure::resetPeak();
        const double start = Measure::cpuSeconds();
        QElapsedTimer timer;
        timer.start();
        work();
        return {Measure::cpuSeconds() - start, double(timer.nsecsElapsed()) / 1e9, Measure::peakBytes()};
    }

    void keepLeast(const Cost &other)
    {
        cpu = std::min(cpu, other.cpu);
        wall = std::min(wall, other.wall);
        memory = std::min(memory, other.memory);
    }
};

/** Both in turn, so that what else goes on in the machine meets both. */
template <class Ours, class Reference>
void compareInTurn(const char *title, int runs, const Ours &ours, const Reference &reference)
{
    Cost least = Cost::of(ours);
    Cost plain = Cost::of(reference);
    for (int i = 1; i < runs; ++i) {
        least.keepLeast(Cost::of(ours));
        plain.keepLeast(Cost::of(reference));
    }
    std::printf("%s, beside plain sqlite3\n", title);
    std::printf("  CPU   %7.2f s %7.2f s %6.2f x\n", least.cpu, plain.cpu, least.cpu / plain.cpu);
    std::printf("  clock %7.2f s %7.2f s %6.2f x\n", least.wall, plain.wall, least.wall / plain.wall);
    std::printf("  peak  %7.1f MB\n", double(least.memory) / 1e6);
}

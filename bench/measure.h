#pragma once

#include <QtGlobal>

/** What a benchmark reads of its own process: CPU time of all threads, and memory. Linux. */
namespace Measure {
double cpuSeconds();
qint64 residentBytes();
/** The most that was resident since resetPeak(). */
qint64 peakBytes();
void resetPeak();
/** How much of a full measure is worked on: a hundredth of it in a trial run, which VORNA_BENCH_TRIAL asks
 * for. */
int amount(int full);
} // namespace Measure

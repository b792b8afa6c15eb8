#pragma once

#include <functional>

/**
 * What one action in a window costs until nothing goes on any more: no event, no file operation, no CPU.
 * A pulse of a millisecond tells how long the event loop stood still. Time that other programs took from the
 * thread is left out, as the machine has other work at times.
 */
namespace Settling {

struct Cost
{
    double cpuSeconds = 0;    ///< all threads
    double wallSeconds = 0;   ///< to the last sign of work
    double freezeSeconds = 0; ///< the longest time between two passes of the event loop
};

/** Runs the action inside an event loop and waits for its end; isBusy tells of work in other threads. */
Cost run(const std::function<void()> &action, const std::function<bool()> &isBusy);

} // namespace Settling

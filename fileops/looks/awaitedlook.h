#pragma once

#include <functional>
#include <memory>
#include <optional>

/**
 * Runs what looks at disks on a thread of its own while the caller waits for it, as nothing ends a look at a
 * disk that does not answer. The caller leaves it behind instead: at once when it is not wanted any more, and
 * when it has given no sign of life for some seconds, in which a disk that sleeps would have woken up. Any
 * thread.
 */
namespace AwaitedLook {
/** Asked by the look as often as it can; that is its sign of life as well. */
using ShouldEnd = std::function<bool()>;
/** Asked by who waits, every few milliseconds. */
using IsUnwanted = std::function<bool()>;

constexpr int patienceMilliseconds = 10000;

/** False when it was left behind. */
bool runJob(const std::function<void(const ShouldEnd &shouldEnd)> &job, const IsUnwanted &isUnwanted);

/**
 * What `look` gives, to which a ShouldEnd is handed; nothing when it was left behind. It has to hold by value
 * all that it needs, as it may come back long after the caller has gone.
 */
template <class Look>
auto run(const Look &look, const IsUnwanted &isUnwanted) -> std::optional<decltype(look(ShouldEnd()))>
{
    const auto found = std::make_shared<std::optional<decltype(look(ShouldEnd()))>>();
    if (!runJob([found, look](const ShouldEnd &shouldEnd) { found->emplace(look(shouldEnd)); }, isUnwanted))
        return {};
    return std::move(*found);
}
} // namespace AwaitedLook

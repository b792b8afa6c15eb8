#pragma once

class QString;

/** Tells what must not be handed to the desktop to be opened, as that could start a program. Any thread. */
namespace Startable {
enum Verdict {
    Harmless,
    Program,
    Unopenable ///< no path, or that of a device, pipe or socket, at which a program may read for ever
};

/** By a name alone, for a copy that nobody may execute: some types are started all the same. */
bool isByName(const QString &name);
/** What the path leads to counts as well as its own name. A path without anything there is harmless. */
Verdict verdictOn(const QString &path);
} // namespace Startable

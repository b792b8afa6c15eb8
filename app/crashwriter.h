#pragma once

/**
 * Writes a crash dump into the working directory when the process faults: "Vorna_", a UTC stamp, "_", the
 * user name, ".dmp". Call it first of all, before any Qt object exists. The system's own crash handling
 * follows the dump. Threads call provideCrashStack() for themselves. The writer runs on whichever thread
 * faulted, takes no lock and uses no Qt; a dump that cannot be written goes unseen.
 */
void installCrashWriter();

#pragma once

/**
 * Room for the crash writer on the thread that calls it: the handler of a fault cannot run on a stack that
 * has overflowed, and each thread needs a stack of its own for that. To be called at the start of a thread;
 * it lasts until the thread ends, and further calls do nothing.
 */
void provideCrashStack();

// The switch of mutate.sh, which puts this file before each source that it mutates. Never part of the program.
#pragma once

#include <atomic>
#include <cstdio>
#include <cstdlib>

#include <fcntl.h>
#include <unistd.h>

namespace QTest {
/** Not there in the program itself. */
__attribute__((weak)) const char *currentTestFunction();
} // namespace QTest

/** Appends the number of a mutant and the test function that reaches it, once a process for both. */
inline void logMutantReached(int log, int number)
{
    constexpr int places = 4096;
    static std::atomic<unsigned> lastFunction[places]; // as hashes: names have no lasting address
    const char *function = QTest::currentTestFunction ? QTest::currentTestFunction() : nullptr;
    if (!function)
        function = "-";
    unsigned hash = 2166136261U;
    for (const char *letter = function; *letter; ++letter)
        hash = (hash ^ static_cast<unsigned char>(*letter)) * 16777619U;
    if (lastFunction[number % places].exchange(hash) == hash)
        return;
    char line[256];
    const int length = std::snprintf(line, sizeof line, "%d %s\n", number, function);
    if (::write(log, line, static_cast<size_t>(length)) != length)
        std::perror("mutants");
}

/**
 * Whether the environment chose this mutant. In every thread, and in the processes that a test starts: the one
 * that reads pictures is given no variables but those of the language and a few more, and soon opens no file.
 */
inline bool vornaMutant(int number)
{
    static const char *const chosenText = std::getenv("LC_VORNA_MUTANT");
    static const int chosen = chosenText ? std::atoi(chosenText) : 0;
    static const char *const logName = std::getenv("LC_VORNA_MUTANT_LOG");
    static const int log = logName ? ::open(logName, O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC, 0644) : -1;
    if (log >= 0)
        logMutantReached(log, number);
    return number == chosen;
}

#include "app/crashwriter.h"

#include "app/settings/crashstack.h"

#include <csignal>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <ctime>
#include <execinfo.h>
#include <fcntl.h>
#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

// Everything that the handler reads is laid ready at installation: inside a handler only async-signal-safe
// calls may be made, so no allocation, no stdio, no time conversion of the C library.
namespace {

constexpr int faultSignals[] = {SIGSEGV, SIGBUS, SIGFPE, SIGILL, SIGABRT};
constexpr std::size_t maxUserName = 64;
constexpr int maxFrames = 128;

char userName[maxUserName + 1] = "unknown";

/** A fixed text that grows at its end; what does not fit is dropped. */
struct Text
{
    char data[256];
    std::size_t length = 0;

    void append(const char *text)
    {
        while (*text && length + 1 < sizeof data)
            data[length++] = *text++;
        data[length] = '\0';
    }
    void appendNumber(std::uintmax_t number, unsigned base, int minDigits)
    {
        char digits[2 * sizeof number + 8];
        int count = 0;
        while (number || count < minDigits) {
            digits[count++] = "0123456789abcdef"[number % base];
            number /= base;
        }
        while (count > 0 && length + 1 < sizeof data)
            data[length++] = digits[--count];
        data[length] = '\0';
    }
};

/** Days since 1970-01-01 to a date of the Gregorian calendar; H. Hinnant, "days_from_civil", inverted. */
void civilFromDays(std::int64_t days, std::uintmax_t &year, unsigned &month, unsigned &day)
{
    days += 719468;
    const std::int64_t era = days / 146097;
    const auto dayOfEra = static_cast<unsigned>(days - era * 146097);
    const unsigned yearOfEra = (dayOfEra - dayOfEra / 1460 + dayOfEra / 36524 - dayOfEra / 146096) / 365;
    const unsigned dayOfYear = dayOfEra - (365 * yearOfEra + yearOfEra / 4 - yearOfEra / 100);
    const unsigned shiftedMonth = (5 * dayOfYear + 2) / 153;
    day = dayOfYear - (153 * shiftedMonth + 2) / 5 + 1;
    month = shiftedMonth < 10 ? shiftedMonth + 3 : shiftedMonth - 9;
    year =
        static_cast<std::uintmax_t>(static_cast<std::int64_t>(yearOfEra) + era * 400 + (month <= 2 ? 1 : 0));
}

void makeFileName(Text &name)
{
    timespec now{};
    clock_gettime(CLOCK_REALTIME, &now);
    std::uintmax_t year = 0;
    unsigned month = 0;
    unsigned day = 0;
    civilFromDays(now.tv_sec / 86400, year, month, day);
    const auto second = static_cast<unsigned>(now.tv_sec % 86400);

    name.append("Vorna_");
    name.appendNumber(year, 10, 2);
    name.append("-");
    name.appendNumber(month, 10, 2);
    name.append("-");
    name.appendNumber(day, 10, 2);
    name.append("-");
    name.appendNumber(second / 3600, 10, 2);
    name.appendNumber(second / 60 % 60, 10, 2);
    name.appendNumber(second % 60, 10, 2);
    name.append("_");
    name.append(userName);
    name.append(".dmp");
}

void writeAll(int file, const char *data, std::size_t length)
{
    while (length > 0) {
        const ssize_t written = write(file, data, length);
        if (written <= 0)
            return;
        data += written;
        length -= static_cast<std::size_t>(written);
    }
}

void copyMemoryMap(int file)
{
    const int maps = open("/proc/self/maps", O_RDONLY | O_CLOEXEC);
    if (maps < 0)
        return;
    char buffer[4096];
    for (ssize_t count = 0; (count = read(maps, buffer, sizeof buffer)) > 0;)
        writeAll(file, buffer, static_cast<std::size_t>(count));
    close(maps);
}

void writeDump(int signalNumber, const void *address)
{
    Text name;
    makeFileName(name);
    const int file = open(name.data, O_WRONLY | O_CREAT | O_TRUNC | O_NOFOLLOW | O_CLOEXEC, 0600);
    if (file < 0)
        return;
    fchmod(file, 0600);

    Text head;
    head.append("signal ");
    head.appendNumber(static_cast<unsigned>(signalNumber), 10, 1);
    head.append("\naddress 0x");
    head.appendNumber(reinterpret_cast<std::uintptr_t>(address), 16, 1);
    head.append("\n\nbacktrace\n");
    writeAll(file, head.data, head.length);

    void *frames[maxFrames];
    backtrace_symbols_fd(frames, backtrace(frames, maxFrames), file);
    writeAll(file, "\nmemory map\n", 12);
    copyMemoryMap(file);
    close(file);
}

extern "C" void handleFault(int signalNumber, siginfo_t *info, void *)
{
    writeDump(signalNumber, info->si_addr);
    // SA_RESETHAND has put the default action back, so this ends the process the system's own way.
    raise(signalNumber);
}

void rememberUserName()
{
    const passwd *entry = getpwuid(getuid());
    if (!entry || !entry->pw_name || !*entry->pw_name)
        return;
    std::strncpy(userName, entry->pw_name, maxUserName);
    // A slash would point the dump at another folder.
    for (char *c = userName; *c; ++c) {
        if (*c == '/')
            *c = '_';
    }
}

} // namespace

void installCrashWriter()
{
    rememberUserName();
    // The first call loads the unwinder, which allocates: here and not in the handler.
    void *frames[4];
    backtrace(frames, 4);

    provideCrashStack();

    struct sigaction action
    {
    };
    action.sa_sigaction = handleFault;
    action.sa_flags = SA_SIGINFO | SA_ONSTACK | static_cast<int>(SA_RESETHAND);
    sigemptyset(&action.sa_mask);
    for (const int signalNumber : faultSignals)
        sigaction(signalNumber, &action, nullptr);
}

#include "fileops/pictures/childside.h"

#include <fcntl.h>
#include <io.h>
#include <windows.h>

// Memory is bounded by the job that the program puts its child into, time by the program's clock.
namespace {
bool readAll(void *bytes, size_t length)
{
    auto *place = static_cast<char *>(bytes);
    while (length > 0) {
        DWORD count = 0;
        if (!ReadFile(GetStdHandle(STD_INPUT_HANDLE), place, static_cast<DWORD>(length), &count, nullptr) ||
            count == 0)
            return false;
        place += count;
        length -= count;
    }
    return true;
}
} // namespace

void ChildSide::begin()
{
    // No box of the system when it crashes.
    SetErrorMode(SEM_FAILCRITICALERRORS | SEM_NOGPFAULTERRORBOX | SEM_NOOPENFILEERRORBOX);
}

void ChildSide::keepReadable(const QStringList &) {}

void ChildSide::shutIn(qint64) {}

void ChildSide::limit(qint64, int) {}

bool ChildSide::receive(void *bytes, size_t length, int &file)
{
    qint64 number = 0;
    if (!readAll(bytes, length) || !readAll(&number, sizeof number))
        return false;
    file = _open_osfhandle(static_cast<intptr_t>(number), _O_RDONLY | _O_BINARY);
    return file >= 0;
}

bool ChildSide::send(const void *bytes, size_t length)
{
    constexpr size_t mostAtOnce = 1 << 20;
    const auto *place = static_cast<const char *>(bytes);
    while (length > 0) {
        DWORD count = 0;
        if (!WriteFile(GetStdHandle(STD_INPUT_HANDLE), place, static_cast<DWORD>(qMin(length, mostAtOnce)),
                       &count, nullptr))
            return false;
        place += count;
        length -= count;
    }
    return true;
}

void ChildSide::closeFile(int file)
{
    _close(file);
}

void ChildSide::leave(int code)
{
    TerminateProcess(GetCurrentProcess(), static_cast<UINT>(code));
    ExitProcess(static_cast<UINT>(code));
}

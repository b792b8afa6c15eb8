#include "app/crashwriter.h"

#include <cstdio>
#include <string>

// windows.h before the headers that need it.
#include <windows.h>

#include <dbghelp.h>

namespace {

std::wstring dumpFileName()
{
    SYSTEMTIME now;
    GetSystemTime(&now);
    char stamp[64];
    std::snprintf(stamp, sizeof stamp, "%02d-%02d-%02d-%02d%02d%02d", now.wYear, now.wMonth, now.wDay,
                  now.wHour, now.wMinute, now.wSecond);

    wchar_t user[256] = L"";
    DWORD length = 256;
    GetUserNameW(user, &length);

    std::wstring name = L"Vorna_";
    for (const char *c = stamp; *c; ++c)
        name += static_cast<wchar_t>(*c);
    return name + L"_" + user + L".dmp";
}

LONG WINAPI writeDump(EXCEPTION_POINTERS *pointers)
{
    HANDLE file = CreateFileW(dumpFileName().c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS,
                              FILE_ATTRIBUTE_NORMAL, nullptr);
    MINIDUMP_EXCEPTION_INFORMATION exception;
    exception.ThreadId = GetCurrentThreadId();
    exception.ExceptionPointers = pointers;
    exception.ClientPointers = TRUE;
    MiniDumpWriteDump(GetCurrentProcess(), GetCurrentProcessId(), file, MiniDumpNormal, &exception, nullptr,
                      nullptr);
    CloseHandle(file);
    return EXCEPTION_CONTINUE_SEARCH;
}

} // namespace

void installCrashWriter()
{
    SetUnhandledExceptionFilter(writeDump);
}

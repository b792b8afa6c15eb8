#include "fileops/pictures/childprocess.h"

#include "fileops/pictures/picturelimits.h"

#include <QByteArray>
#include <QString>

#include <atomic>
#include <fcntl.h>
#include <io.h>
#include <string>
#include <vector>
#include <windows.h>

namespace {
HANDLE handleOf(int file)
{
    return reinterpret_cast<HANDLE>(_get_osfhandle(file));
}

/** Ends its one process with its last handle, and keeps it within bounds. */
HANDLE makeJob()
{
    JOBOBJECT_EXTENDED_LIMIT_INFORMATION limits = {};
    limits.BasicLimitInformation.LimitFlags =
        JOB_OBJECT_LIMIT_KILL_ON_JOB_CLOSE | JOB_OBJECT_LIMIT_ACTIVE_PROCESS |
        JOB_OBJECT_LIMIT_PROCESS_MEMORY | JOB_OBJECT_LIMIT_DIE_ON_UNHANDLED_EXCEPTION;
    limits.BasicLimitInformation.ActiveProcessLimit = 1;
    limits.ProcessMemoryLimit = PictureLimit::mostBytes;
    HANDLE job = CreateJobObjectW(nullptr, nullptr);
    SetInformationJobObject(job, JobObjectExtendedLimitInformation, &limits, sizeof limits);
    return job;
}

/** The process of a job, for handles that it is to get. */
HANDLE processOf(HANDLE job)
{
    JOBOBJECT_BASIC_PROCESS_ID_LIST list = {};
    QueryInformationJobObject(job, JobObjectBasicProcessIdList, &list, sizeof list, nullptr);
    return OpenProcess(PROCESS_DUP_HANDLE, FALSE, static_cast<DWORD>(list.ProcessIdList[0]));
}

/** Both ends of a channel; the second one can be inherited. */
bool makeChannel(HANDLE &own, HANDLE &given)
{
    static std::atomic<int> count{0};
    const std::wstring name =
        L"\\\\.\\pipe\\vorna-" + std::to_wstring(GetCurrentProcessId()) + L"-" + std::to_wstring(++count);
    constexpr DWORD bufferLength = 1 << 16;
    own = CreateNamedPipeW(name.c_str(), PIPE_ACCESS_DUPLEX | FILE_FLAG_FIRST_PIPE_INSTANCE,
                           PIPE_TYPE_BYTE | PIPE_REJECT_REMOTE_CLIENTS, 1, bufferLength, bufferLength, 0,
                           nullptr);
    SECURITY_ATTRIBUTES inherited = {sizeof inherited, nullptr, TRUE};
    given = CreateFileW(name.c_str(), GENERIC_READ | GENERIC_WRITE, 0, &inherited, OPEN_EXISTING, 0, nullptr);
    return own != INVALID_HANDLE_VALUE && given != INVALID_HANDLE_VALUE;
}

/** It inherits nothing but the channel, as its standard input. */
bool spawn(const char *program, const char *argument, HANDLE channel, HANDLE job)
{
    SIZE_T length = 0;
    InitializeProcThreadAttributeList(nullptr, 1, 0, &length);
    std::vector<char> list(length);
    STARTUPINFOEXW start = {};
    start.StartupInfo.cb = sizeof start;
    start.StartupInfo.dwFlags = STARTF_USESTDHANDLES;
    start.StartupInfo.hStdInput = channel;
    start.lpAttributeList = reinterpret_cast<LPPROC_THREAD_ATTRIBUTE_LIST>(list.data());
    InitializeProcThreadAttributeList(start.lpAttributeList, 1, 0, &length);
    UpdateProcThreadAttribute(start.lpAttributeList, 0, PROC_THREAD_ATTRIBUTE_HANDLE_LIST, &channel,
                              sizeof channel, nullptr, nullptr);
    const std::wstring path = QString::fromUtf8(program).toStdWString();
    std::wstring command = L"\"" + path + L"\" " + QString::fromUtf8(argument).toStdWString();
    PROCESS_INFORMATION process = {};
    // Bound before its first step.
    const bool isStarted = CreateProcessW(path.c_str(), command.data(), nullptr, nullptr, TRUE,
                                          CREATE_SUSPENDED | CREATE_NO_WINDOW | EXTENDED_STARTUPINFO_PRESENT,
                                          nullptr, nullptr, &start.StartupInfo, &process);
    DeleteProcThreadAttributeList(start.lpAttributeList);
    if (!isStarted)
        return false;
    const bool isBound = AssignProcessToJobObject(job, process.hProcess);
    if (isBound)
        ResumeThread(process.hThread);
    else
        TerminateProcess(process.hProcess, 1);
    CloseHandle(process.hThread);
    CloseHandle(process.hProcess);
    return isBound;
}
} // namespace

const char *ChildProcess::ownProgram()
{
    static const QByteArray path = [] {
        constexpr DWORD mostLength = 32768;
        std::vector<wchar_t> name(mostLength);
        GetModuleFileNameW(nullptr, name.data(), mostLength);
        return QString::fromWCharArray(name.data()).toUtf8();
    }();
    return path.constData();
}

bool ChildProcess::start(const char *program, const char *argument)
{
    end();
    HANDLE own = INVALID_HANDLE_VALUE;
    HANDLE given = INVALID_HANDLE_VALUE;
    HANDLE job = makeJob();
    const bool isStarted = makeChannel(own, given) && spawn(program, argument, given, job);
    if (given != INVALID_HANDLE_VALUE)
        CloseHandle(given);
    if (isStarted) {
        m_channel = _open_osfhandle(reinterpret_cast<intptr_t>(own), _O_BINARY);
        m_id = reinterpret_cast<qint64>(job);
        return true;
    }
    if (own != INVALID_HANDLE_VALUE)
        CloseHandle(own);
    CloseHandle(job);
    return false;
}

void ChildProcess::end()
{
    if (!isRunning())
        return;
    _close(m_channel);
    m_channel = -1;
    CloseHandle(reinterpret_cast<HANDLE>(m_id));
}

bool ChildProcess::send(const void *bytes, size_t length, int file)
{
    HANDLE process = processOf(reinterpret_cast<HANDLE>(m_id));
    HANDLE theirs = nullptr;
    const bool isHanded =
        DuplicateHandle(GetCurrentProcess(), handleOf(file), process, &theirs, GENERIC_READ, FALSE, 0);
    CloseHandle(process);
    const auto number = static_cast<qint64>(reinterpret_cast<intptr_t>(theirs));
    DWORD written = 0;
    return isHanded && WriteFile(handleOf(m_channel), bytes, static_cast<DWORD>(length), &written, nullptr) &&
           WriteFile(handleOf(m_channel), &number, sizeof number, &written, nullptr);
}

bool ChildProcess::receive(void *bytes, size_t length, const std::function<bool()> &mayWait)
{
    constexpr DWORD millisecondsBetweenLooks = 2;
    auto *place = static_cast<char *>(bytes);
    while (length > 0) {
        DWORD available = 0;
        if (!PeekNamedPipe(handleOf(m_channel), nullptr, 0, nullptr, &available, nullptr) || !mayWait())
            return false;
        if (available == 0) {
            Sleep(millisecondsBetweenLooks);
            continue;
        }
        const DWORD wanted = qMin(available, static_cast<DWORD>(qMin<size_t>(length, MAXLONG)));
        DWORD count = 0;
        if (!ReadFile(handleOf(m_channel), place, wanted, &count, nullptr))
            return false;
        place += count;
        length -= count;
    }
    return true;
}

int ChildProcess::fileOf(const QByteArray &bytes)
{
    wchar_t folder[MAX_PATH + 1];
    wchar_t name[MAX_PATH + 1];
    if (!GetTempPathW(MAX_PATH, folder) || !GetTempFileNameW(folder, L"vrn", 0, name))
        return -1;
    HANDLE file = CreateFileW(name, GENERIC_READ | GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS,
                              FILE_ATTRIBUTE_TEMPORARY | FILE_FLAG_DELETE_ON_CLOSE, nullptr);
    DWORD written = 0;
    if (file == INVALID_HANDLE_VALUE)
        return -1;
    if (!WriteFile(file, bytes.constData(), static_cast<DWORD>(bytes.size()), &written, nullptr) ||
        SetFilePointer(file, 0, nullptr, FILE_BEGIN) != 0) {
        CloseHandle(file);
        return -1;
    }
    return _open_osfhandle(reinterpret_cast<intptr_t>(file), _O_BINARY);
}

void ChildProcess::closeFile(int file)
{
    if (file >= 0)
        _close(file);
}

#include "fileops/pictures/childprocess.h"

#include "fileops/pictures/childside.h"
#include "fileops/pictures/descriptor.h"

#include <QByteArray>

#include <cerrno>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/mman.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace {
/** What a reader of pictures needs to find its libraries, plug-ins and fonts: neither a display nor a bus. */
std::vector<char *> environment()
{
    static const char *const names[] = {
        "PATH=",           "HOME=",       "LANG=",     "LC_",         "LD_LIBRARY_PATH", "QT_PLUGIN_PATH=",
        "XDG_CACHE_HOME=", "XDG_CONFIG_", "XDG_DATA_", "FONTCONFIG_", "TMPDIR="};
    std::vector<char *> kept;
    for (char **variable = environ; *variable; ++variable) {
        for (const char *name : names) {
            if (std::strncmp(*variable, name, std::strlen(name)) == 0) {
                kept.push_back(*variable);
                break;
            }
        }
    }
#ifdef __SANITIZE_ADDRESS__
    // Small blocks lie within addresses taken at the start, so that the sanitizer itself limits their memory.
    static char options[] = "ASAN_OPTIONS=detect_leaks=0:allocator_may_return_null=1:quarantine_size_mb=16:"
                            "hard_rss_limit_mb=2500:handle_abort=0:handle_segv=0";
    kept.push_back(options);
#endif
    kept.push_back(nullptr);
    return kept;
}

/** The default for all signals, and nothing open but the standard channels and that to here. */
bool spawn(const char *program, const char *argument, int channel, pid_t &id)
{
    posix_spawn_file_actions_t files;
    posix_spawnattr_t attributes;
    posix_spawn_file_actions_init(&files);
    posix_spawnattr_init(&attributes);
    posix_spawn_file_actions_addopen(&files, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    posix_spawn_file_actions_addopen(&files, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
    posix_spawn_file_actions_adddup2(&files, channel, ChildSide::channel);
    posix_spawn_file_actions_addclosefrom_np(&files, ChildSide::channel + 1);
    sigset_t none;
    sigset_t all;
    sigemptyset(&none);
    sigfillset(&all);
    posix_spawnattr_setsigmask(&attributes, &none);
    posix_spawnattr_setsigdefault(&attributes, &all);
    // In a session of its own: an interrupt from the terminal is for the program to act on.
    posix_spawnattr_setflags(&attributes,
                             POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF | POSIX_SPAWN_SETSID);
    char name[] = "vorna";
    char *const arguments[] = {name, const_cast<char *>(argument), nullptr};
    const int result = posix_spawn(&id, program, &files, &attributes, arguments, environment().data());
    posix_spawnattr_destroy(&attributes);
    posix_spawn_file_actions_destroy(&files);
    return result == 0;
}
} // namespace

const char *ChildProcess::ownProgram()
{
    return "/proc/self/exe";
}

bool ChildProcess::start(const char *program, const char *argument)
{
    end();
    int ends[2] = {-1, -1};
    if (::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends) != 0)
        return false;
    pid_t id = 0;
    // A descriptor that is duplicated onto itself would stay closed on exec.
    const int handed = ::fcntl(ends[1], F_DUPFD_CLOEXEC, ChildSide::channel + 1);
    const bool isStarted = handed >= 0 && spawn(program, argument, handed, id);
    ::close(ends[1]);
    if (handed >= 0)
        ::close(handed);
    if (!isStarted) {
        ::close(ends[0]);
        return false;
    }
    m_channel = ends[0];
    m_id = id;
    return true;
}

void ChildProcess::end()
{
    if (!isRunning())
        return;
    ::close(m_channel);
    m_channel = -1;
    // Not reaped before, so the number is still its own.
    ::kill(static_cast<pid_t>(m_id), SIGKILL);
    while (::waitpid(static_cast<pid_t>(m_id), nullptr, 0) < 0 && errno == EINTR) {
    }
}

bool ChildProcess::send(const void *bytes, size_t length, int file)
{
    iovec part = {const_cast<void *>(bytes), length};
    alignas(cmsghdr) char control[CMSG_SPACE(sizeof file)] = {};
    msghdr message = {};
    message.msg_iov = &part;
    message.msg_iovlen = 1;
    message.msg_control = control;
    message.msg_controllen = sizeof control;
    cmsghdr *head = CMSG_FIRSTHDR(&message);
    head->cmsg_level = SOL_SOCKET;
    head->cmsg_type = SCM_RIGHTS;
    head->cmsg_len = CMSG_LEN(sizeof file);
    std::memcpy(CMSG_DATA(head), &file, sizeof file);
    ssize_t sent = -1;
    do {
        sent = ::sendmsg(m_channel, &message, MSG_NOSIGNAL);
    } while (sent < 0 && errno == EINTR);
    return sent == static_cast<ssize_t>(length);
}

bool ChildProcess::receive(void *bytes, size_t length, const std::function<bool()> &mayWait)
{
    constexpr int millisecondsBetweenLooks = 50;
    auto *place = static_cast<char *>(bytes);
    while (length > 0) {
        pollfd channel = {m_channel, POLLIN, 0};
        const int ready = ::poll(&channel, 1, millisecondsBetweenLooks);
        if (ready < 0 && errno != EINTR)
            return false;
        if (!mayWait())
            return false;
        if (ready <= 0)
            continue;
        const ssize_t count = ::recv(m_channel, place, length, 0);
        if (count < 0 && errno == EINTR)
            continue;
        if (count <= 0)
            return false;
        place += count;
        length -= static_cast<size_t>(count);
    }
    return true;
}

int ChildProcess::fileOf(const QByteArray &bytes)
{
    const int file = ::memfd_create("picture", MFD_CLOEXEC | MFD_ALLOW_SEALING);
    if (file < 0)
        return -1;
    if (!Descriptor::writeAll(file, bytes.constData(), static_cast<size_t>(bytes.size()))) {
        ::close(file);
        return -1;
    }
    ::fcntl(file, F_ADD_SEALS, F_SEAL_WRITE | F_SEAL_GROW | F_SEAL_SHRINK | F_SEAL_SEAL);
    ::lseek(file, 0, SEEK_SET);
    return file;
}

void ChildProcess::closeFile(int file)
{
    if (file >= 0)
        ::close(file);
}

#include "fileops/pictures/childside.h"

#include "fileops/pictures/descriptor.h"

#include <QFile>
#include <QStringList>

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <fcntl.h>
#include <linux/audit.h>
#include <linux/filter.h>
#include <linux/landlock.h>
#include <linux/seccomp.h>
#include <malloc.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <unistd.h>
#include <vector>

namespace {
#ifdef __SANITIZE_ADDRESS__
constexpr bool isSanitized = true;
#else
constexpr bool isSanitized = false;
#endif

// Of addresses, before the first picture.
rlim_t ownBytes = 0;
// Opened while files can be, and left open: the number would go to a file too many.
int ownSize = -1;
bool isKeptToFolders = false;

#if defined(__x86_64__)
constexpr quint32 architecture = AUDIT_ARCH_X86_64;
#elif defined(__aarch64__)
constexpr quint32 architecture = AUDIT_ARCH_AARCH64;
#else
constexpr quint32 architecture = 0;
#endif

/** What a reader of pictures never asks of the system. */
constexpr long refusedCalls[] = {
    SYS_socket,
    SYS_socketpair,
    SYS_connect,
    SYS_bind,
    SYS_listen,
    SYS_sendto,
    SYS_sendmsg,
    SYS_sendmmsg,
    SYS_execve,
    SYS_execveat,
    SYS_clone,
    SYS_clone3,
    SYS_kill,
    SYS_tkill,
    SYS_tgkill,
    SYS_rt_sigqueueinfo,
    SYS_rt_tgsigqueueinfo,
    SYS_pidfd_open,
    SYS_pidfd_send_signal,
    SYS_pidfd_getfd,
    SYS_ptrace,
    SYS_process_vm_readv,
    SYS_process_vm_writev,
    SYS_openat2,
    SYS_open_by_handle_at,
    SYS_unlinkat,
    SYS_renameat2,
    SYS_mkdirat,
    SYS_linkat,
    SYS_symlinkat,
    SYS_mknodat,
    SYS_fchmodat,
    SYS_fchownat,
    SYS_fchmod,
    SYS_fchown,
    SYS_ftruncate,
    SYS_truncate,
    SYS_utimensat,
    SYS_setxattr,
    SYS_fsetxattr,
    SYS_mount,
    SYS_umount2,
    SYS_chroot,
    SYS_unshare,
    SYS_setns,
    SYS_bpf,
    SYS_perf_event_open,
    SYS_io_uring_setup,
    SYS_keyctl,
    SYS_add_key,
    SYS_request_key,
    SYS_userfaultfd,
    SYS_memfd_create,
    SYS_shmget,
    SYS_msgget,
    SYS_semget,
    SYS_inotify_init1,
    SYS_setpriority,
#ifdef SYS_open
    // The old forms, which newer machines do without.
    SYS_creat,
    SYS_fork,
    SYS_vfork,
    SYS_unlink,
    SYS_rename,
    SYS_renameat,
    SYS_mkdir,
    SYS_rmdir,
    SYS_link,
    SYS_symlink,
    SYS_mknod,
    SYS_chmod,
    SYS_chown,
    SYS_lchown,
    SYS_utime,
    SYS_utimes,
#endif
};

/** These too, where folders cannot be told apart. */
constexpr long openingCalls[] = {
    SYS_openat,
#ifdef SYS_open
    SYS_open,
#endif
};

void refuse(long call, std::vector<sock_filter> &filter)
{
    filter.push_back(BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, static_cast<quint32>(call), 0, 1));
    filter.push_back(BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ERRNO | EPERM));
}

/** Refused calls fail as if the user had no right to them; all threads are bound. */
void refuseCalls()
{
    if (architecture == 0)
        return;
    std::vector<sock_filter> filter = {
        BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, arch)),
        BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, architecture, 1, 0),
        BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_KILL_PROCESS),
        BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, nr)),
#ifdef __x86_64__
        // The numbers of a second set of calls begin here.
        BPF_JUMP(BPF_JMP | BPF_JGE | BPF_K, 0x40000000, 0, 1),
        BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_KILL_PROCESS),
#endif
    };
    for (const long call : refusedCalls)
        refuse(call, filter);
    if (!isKeptToFolders) {
        for (const long call : openingCalls)
            refuse(call, filter);
    }
    filter.push_back(BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW));
    sock_fprog program = {static_cast<unsigned short>(filter.size()), filter.data()};
    ::syscall(SYS_seccomp, SECCOMP_SET_MODE_FILTER, SECCOMP_FILTER_FLAG_TSYNC, &program);
}

void setLimit(__rlimit_resource resource, rlim_t soft, rlim_t hard)
{
    const rlimit values = {soft, hard};
    ::setrlimit(resource, &values);
}

rlim_t bytesInUse()
{
    char text[64] = {};
    if (::pread(ownSize, text, sizeof text - 1, 0) < 0)
        return 0;
    return std::strtoul(text, nullptr, 10) * static_cast<rlim_t>(::sysconf(_SC_PAGESIZE));
}
} // namespace

void ChildSide::begin()
{
    ownSize = ::open("/proc/self/statm", O_RDONLY | O_CLOEXEC);
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
    ::prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0);
    ::prctl(PR_SET_DUMPABLE, 0);
    setLimit(RLIMIT_CORE, 0, 0);
    std::signal(SIGPIPE, SIG_IGN);
}

void ChildSide::keepReadable(const QStringList &folders)
{
    landlock_ruleset_attr rules = {};
    rules.handled_access_fs = (LANDLOCK_ACCESS_FS_MAKE_SYM << 1) - 1; // all that the first version knows
    const int ruleset =
        static_cast<int>(::syscall(SYS_landlock_create_ruleset, &rules, sizeof rules.handled_access_fs, 0));
    if (ruleset < 0)
        return;
    for (const QString &folder : folders) {
        landlock_path_beneath_attr rule = {};
        rule.allowed_access = LANDLOCK_ACCESS_FS_READ_FILE | LANDLOCK_ACCESS_FS_READ_DIR;
        rule.parent_fd = ::open(QFile::encodeName(folder).constData(), O_PATH | O_DIRECTORY | O_CLOEXEC);
        if (rule.parent_fd < 0)
            continue;
        ::syscall(SYS_landlock_add_rule, ruleset, LANDLOCK_RULE_PATH_BENEATH, &rule, 0);
        ::close(rule.parent_fd);
    }
    isKeptToFolders = ::syscall(SYS_landlock_restrict_self, ruleset, 0) == 0;
    ::close(ruleset);
}

void ChildSide::shutIn(qint64 mostBytes)
{
    // Each further heap would take addresses in advance.
    ::mallopt(M_ARENA_MAX, 1);
    ownBytes = bytesInUse();
    const rlim_t most = ownBytes + static_cast<rlim_t>(mostBytes);
    setLimit(RLIMIT_AS, most, most);
    // A decoder may warn without end, and what it is told to write to may be somebody's log.
    if (!isSanitized)
        ::dup2(STDOUT_FILENO, STDERR_FILENO);
    // That of the picture, and one for a font; the sanitizer looks at foreign memory through a pipe.
    constexpr rlim_t more = isSanitized ? 4 : 2;
    const int next = ::dup(channel);
    ::close(next);
    setLimit(RLIMIT_NOFILE, static_cast<rlim_t>(next) + more, static_cast<rlim_t>(next) + more);
    setLimit(RLIMIT_FSIZE, 0, 0);
    refuseCalls();
}

void ChildSide::limit(qint64 bytes, int seconds)
{
    rlimit now = {};
    ::getrlimit(RLIMIT_AS, &now);
    setLimit(RLIMIT_AS, qMin(ownBytes + static_cast<rlim_t>(bytes), now.rlim_max), now.rlim_max);
    ::getrlimit(RLIMIT_CPU, &now);
    timespec used = {};
    ::clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &used);
    setLimit(RLIMIT_CPU, static_cast<rlim_t>(used.tv_sec + 1 + seconds), now.rlim_max);
}

bool ChildSide::receive(void *bytes, size_t length, int &file)
{
    iovec part = {bytes, length};
    alignas(cmsghdr) char control[CMSG_SPACE(sizeof file)] = {};
    msghdr message = {};
    message.msg_iov = &part;
    message.msg_iovlen = 1;
    message.msg_control = control;
    message.msg_controllen = sizeof control;
    file = -1;
    ssize_t count = -1;
    do {
        count = ::recvmsg(channel, &message, MSG_CMSG_CLOEXEC | MSG_WAITALL);
    } while (count < 0 && errno == EINTR);
    const cmsghdr *head = CMSG_FIRSTHDR(&message);
    if (head && head->cmsg_level == SOL_SOCKET && head->cmsg_type == SCM_RIGHTS)
        std::memcpy(&file, CMSG_DATA(head), sizeof file);
    return count == static_cast<ssize_t>(length) && file >= 0;
}

bool ChildSide::send(const void *bytes, size_t length)
{
    return Descriptor::writeAll(channel, bytes, length);
}

void ChildSide::closeFile(int file)
{
    ::close(file);
}

void ChildSide::leave(int code)
{
    ::_exit(code);
}

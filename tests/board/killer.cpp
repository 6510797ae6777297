// Runs a command and kills it, with all that it started, right before its Nth change of a file:
//
//   vxcli_killer N COMMAND ARGS...       ends with 137, or with the command's status if it makes fewer changes
//   vxcli_killer N+half COMMAND ARGS...  the Nth change is made, but of a write only the first half
//   vxcli_killer 0 COMMAND ARGS...       kills nothing and lists the changes on standard error
//
// A change is a system call that alters a file or a directory; pipes and devices do not count. The calls are seen
// by ptrace(2), so that nothing gets around it: not the C library's own writes, nor the shell and the cp that the
// command starts.

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <elf.h>
#include <fcntl.h>
#include <iterator>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <sys/prctl.h>
#include <sys/ptrace.h>
#include <sys/syscall.h>
#include <sys/uio.h>
#include <sys/user.h>
#include <sys/wait.h>
#include <unistd.h>

static constexpr int status_killed = 128 + SIGKILL;
static constexpr int status_usage = 2;
static constexpr int none = -1;

struct change {
    unsigned call;
    const char *name;
    int file;  // which argument is the descriptor of the file; none: the call takes a path
    int path;  // which one is the path
    int flags; // which one has the flags of open(2); without O_CREAT and O_TRUNC it is no change
    bool can_be_halved;
};

static constexpr change changes[] = {
    {SYS_write, "write", 0, none, none, true},
    {SYS_pwrite64, "pwrite", 0, none, none, true},
    {SYS_writev, "writev", 0, none, none, false},
    {SYS_ftruncate, "ftruncate", 0, none, none, false},
    {SYS_fallocate, "fallocate", 0, none, none, false},
    {SYS_openat, "open", none, 1, 2, false},
    {SYS_renameat, "rename", none, 3, none, false},
    {SYS_renameat2, "rename", none, 3, none, false},
    {SYS_unlinkat, "unlink", none, 1, none, false},
    {SYS_mkdirat, "mkdir", none, 1, none, false},
    {SYS_symlinkat, "symlink", none, 2, none, false},
    {SYS_linkat, "link", none, 3, none, false},
    {SYS_truncate, "truncate", none, 0, none, false},
#ifdef SYS_open
    {SYS_open, "open", none, 0, 1, false},
    {SYS_creat, "creat", none, 0, none, false},
    {SYS_rename, "rename", none, 1, none, false},
    {SYS_unlink, "unlink", none, 0, none, false},
    {SYS_rmdir, "rmdir", none, 0, none, false},
    {SYS_mkdir, "mkdir", none, 0, none, false},
    {SYS_symlink, "symlink", none, 1, none, false},
    {SYS_link, "link", none, 1, none, false},
#endif
};

// Copies within the kernel have no halves: cp is told that there are none, and reads and writes.
static constexpr unsigned refused[] = {SYS_copy_file_range, SYS_sendfile};

// Lets the calls of `changes` stop for the tracer, in this process and in all that it starts.
static bool announce_changes() {
    static constexpr size_t length = 1 + 2 * (std::size(changes) + std::size(refused)) + 1;
    sock_filter code[length];
    size_t end = 0;
    const auto answer = [&](unsigned call, unsigned result) {
        code[end++] = BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, call, 0, 1);
        code[end++] = BPF_STMT(BPF_RET | BPF_K, result);
    };
    code[end++] = BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, nr));
    for (const change &each : changes) {
        answer(each.call, SECCOMP_RET_TRACE);
    }
    for (const unsigned call : refused) {
        answer(call, SECCOMP_RET_ERRNO | ENOSYS);
    }
    code[end++] = BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW);
    const sock_fprog program{static_cast<unsigned short>(end), code};
    return prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) == 0 &&
           prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &program, 0, 0) == 0;
}

[[noreturn]] static void run(char **words) {
    if (setpgid(0, 0) == 0 && ptrace(PTRACE_TRACEME, 0, nullptr, nullptr) == 0 && raise(SIGSTOP) == 0 &&
        announce_changes()) {
        execvp(words[0], words);
    }
    fprintf(stderr, "vxcli_killer: cannot run %s: %s\n", words[0], strerror(errno));
    _exit(status_usage);
}

// What the file is called that the call changes; empty if that is neither a file nor a directory.
static void find_name(pid_t process, const change &kind, const uint64_t *arguments, char (&name)[PATH_MAX]) {
    memset(name, 0, sizeof name);
    if (kind.file != none) {
        char link[64];
        snprintf(link, sizeof link, "/proc/%d/fd/%d", process, static_cast<int>(arguments[kind.file]));
        if (readlink(link, name, sizeof name - 1) < 0 || *name != '/') { // a pipe, say
            *name = '\0';
        }
    } else {
        const uint64_t start = arguments[kind.path];
        const iovec here = {name, std::min<size_t>(sizeof name - 1, 4096 - start % 4096)}; // not into the next page
        const iovec there = {reinterpret_cast<void *>(start), here.iov_len}; // NOLINT(performance-no-int-to-ptr)
        process_vm_readv(process, &here, 1, &there, 1, 0);
    }
    if (strncmp(name, "/dev/", 5) == 0) {
        *name = '\0';
    }
}

static bool halve(pid_t process) {
    user_regs_struct registers = {};
    iovec all = {&registers, sizeof registers};
    if (ptrace(PTRACE_GETREGSET, process, NT_PRSTATUS, &all) != 0) {
        return false;
    }
#if defined(__x86_64__)
    registers.rdx /= 2;
#else
    registers.regs[2] /= 2;
#endif
    return ptrace(PTRACE_SETREGSET, process, NT_PRSTATUS, &all) == 0;
}

struct plan {
    long at;
    bool half;
    long seen;
};

// The process stands before a system call. True if it is the one to be killed at.
static bool reached(pid_t process, plan *plan) {
    __ptrace_syscall_info info = {};
    ptrace(PTRACE_GET_SYSCALL_INFO, process, sizeof info, &info);
    const auto *kind = std::find_if(std::begin(changes), std::end(changes),
                                    [&](const change &each) { return each.call == info.seccomp.nr; });
    if (kind == std::end(changes) ||
        (kind->flags != none && (info.seccomp.args[kind->flags] & (O_CREAT | O_TRUNC)) == 0)) {
        return false;
    }
    char name[PATH_MAX];
    find_name(process, *kind, info.seccomp.args, name);
    if (*name == '\0') {
        return false;
    }
    plan->seen++;
    if (plan->at == 0) {
        const long long size = kind->can_be_halved ? static_cast<long long>(info.seccomp.args[2]) : 0;
        fprintf(stderr, "change %ld %s %lld %s\n", plan->seen, kind->name, size, name);
    }
    return plan->seen == plan->at;
}

// Follows all processes to their end. The command's status.
static int follow(pid_t command, plan *plan) {
    int status = 0;
    int result = status_usage;
    pid_t process = 0;
    while ((process = waitpid(-1, &status, __WALL)) > 0) {
        if (!WIFSTOPPED(status)) {
            if (process == command) {
                result = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
            }
            continue;
        }
        const int event = status >> 16;
        const int signal = WSTOPSIG(status);
        const bool half_is_done = signal == (SIGTRAP | 0x80);
        const bool now = half_is_done || (event == PTRACE_EVENT_SECCOMP && reached(process, plan));
        if (now && (half_is_done || !plan->half || !halve(process))) {
            kill(-command, SIGKILL); // one group: the command's and all of its children's
            result = status_killed;
        } else if (now) {
            ptrace(PTRACE_SYSCALL, process, nullptr, 0L); // to the call's end
        } else {
            const bool own = event != 0 || signal == SIGSTOP || signal == SIGTRAP; // ptrace's, not the process's
            ptrace(PTRACE_CONT, process, nullptr, own ? 0L : static_cast<long>(signal));
        }
    }
    return result;
}

int main(int argc, char *argv[]) {
    if (argc < 3) {
        fputs("vxcli_killer takes N or N+half, and a command\n", stderr);
        return status_usage;
    }
    char *rest = nullptr;
    plan plan = {.at = strtol(argv[1], &rest, 10), .half = strcmp(rest, "+half") == 0, .seen = 0};
    const pid_t command = fork();
    if (command == 0) {
        run(argv + 2);
    }
    int status = 0;
    if (command < 0 || waitpid(command, &status, WUNTRACED) != command || !WIFSTOPPED(status)) {
        return status_usage;
    }
    const long options = PTRACE_O_EXITKILL | PTRACE_O_TRACESECCOMP | PTRACE_O_TRACESYSGOOD | PTRACE_O_TRACEEXEC |
                         PTRACE_O_TRACEFORK | PTRACE_O_TRACEVFORK | PTRACE_O_TRACECLONE;
    ptrace(PTRACE_SETOPTIONS, command, nullptr, options);
    ptrace(PTRACE_CONT, command, nullptr, 0L);
    return follow(command, &plan);
}

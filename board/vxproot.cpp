// vxproot: runs proot so that its view behaves as one made by bubblewrap does.
//
//   vxproot proot OPTIONS... PATH-OF-VXPROOT --inside COMMAND ARGS...
//
// proot knows the system calls of its time. What it does not know it lets pass untranslated, and the program
// in the view would look at the host's file instead of the unit's. Here these calls answer "not implemented",
// upon which the C library and everything above it use the older ones.
//
// proot also stays until the last process in the view has ended, and exits with that one's status. Here the
// command runs under a second copy of this program (--inside), which reports its status over a pipe; upon the
// report the first copy exits with that status and leaves proot to the processes in the background.

#include <array>
#include <cerrno>
#include <cstddef>
#include <cstdio>
#include <cstring>
#include <linux/audit.h>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

static constexpr int report_fd = 63;
static constexpr int status_usage = 2;
static constexpr int status_not_run = 127;

#if defined(__x86_64__)
static constexpr unsigned native_arch = AUDIT_ARCH_X86_64;
#elif defined(__aarch64__)
static constexpr unsigned native_arch = AUDIT_ARCH_AARCH64;
#else
static constexpr unsigned native_arch = 0; // every call passes
#endif

// Not clone3: it names no file, and after the older clone that system() would use then, proot loses the heap of the
// process that called it.
static constexpr std::array<unsigned, 4> refused_calls{SYS_statx, SYS_faccessat2, SYS_openat2, SYS_execveat};

// Lets the calls of refused_calls fail with ENOSYS, in this process and in all that it starts.
static bool refuse_new_calls() {
    static constexpr size_t head = 3;
    static constexpr size_t allow = head + refused_calls.size();
    std::array<sock_filter, allow + 2> code{};
    code[0] = BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, arch));
    code[1] = BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, native_arch, 0, allow - 2);
    code[2] = BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, nr));
    for (size_t i = 0; i < refused_calls.size(); i++) {
        const auto to_refusal = static_cast<unsigned char>(refused_calls.size() - i);
        code[head + i] = BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, refused_calls[i], to_refusal, 0);
    }
    code[allow] = BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW);
    code[allow + 1] = BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ERRNO | ENOSYS);
    const sock_fprog program{static_cast<unsigned short>(code.size()), code.data()};
    return prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) == 0 &&
           prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &program, 0, 0) == 0;
}

[[noreturn]] static void execute(char **words) {
    execvp(words[0], words);
    fprintf(stderr, "vxboard: cannot run %s: %s\n", words[0], strerror(errno));
    _exit(status_not_run);
}

// Waits for a child. Its exit status, or 128 + the signal that ended it, as a shell counts.
static int wait_for(pid_t child) {
    int status = 0;
    while (waitpid(child, &status, 0) < 0) {
        if (errno != EINTR) {
            return status_not_run;
        }
    }
    return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}

// In the view: runs the command and reports its status.
static int run_inside(char **words) {
    const pid_t child = fork();
    if (child == 0) {
        close(report_fd);
        execute(words);
    }
    const int status = child < 0 ? status_not_run : wait_for(child);
    return write(report_fd, &status, sizeof status) == sizeof status ? status : status_not_run;
}

// On the host: runs proot until the command's status is reported.
static int run_outside(char **words) {
    std::array<int, 2> report{};
    if (pipe(report.data()) != 0) {
        return status_not_run;
    }
    const pid_t proot = fork();
    if (proot == 0) {
        dup2(report[1], report_fd);
        close(report[0]);
        close(report[1]);
        if (!refuse_new_calls()) {
            fprintf(stderr, "vxboard: cannot filter system calls: %s\n", strerror(errno));
            _exit(status_not_run);
        }
        execute(words);
    }
    close(report[1]);
    int status = status_not_run;
    if (proot > 0 && read(report[0], &status, sizeof status) != sizeof status) {
        status = wait_for(proot); // ended without a report: the view was never made
    }
    return status;
}

int main(int argc, char **argv) {
    if (argc < 2) {
        fputs("vxproot is run by vxboard, see vxboard --help\n", stderr);
        return status_usage;
    }
    if (strcmp(argv[1], "--inside") == 0 && argc > 2) {
        return run_inside(argv + 2);
    }
    return run_outside(argv + 1);
}

// The drivers' stand-in: a preload that serves /dev/vxserdes from the attributes under BOARD/serdes.
//
//   mode      pattern that is sent, 0 (off) to 6
//   bist      pattern that is checked, 0 (off) to 6
//   ready     1 if the checker has locked; 0 makes the state request answer 0
//   ber       bit-error rate of the link, such as 1e-9
//   counter   errors counted when the count was started
//   counting  when that was, "<seconds>.<nanoseconds>"; missing or empty: no count is running
//
// Opening the node gives a descriptor of that directory, so it needs no table of its own, survives fork and exec,
// and a board without the directory has no node. Requests can be made to fail: the names below are operations of
// BOARD/faults.
//
// The console is the board's own, too, in BOARD/console:
//
//   output    what was written to /dev/console
//   redirect  the terminal that takes its place, such as /dev/pts/3; empty: none
//
// TIOCCONS never comes to the host, whose console it would take away. It does what the kernel does.

#include "board_dir.h"
#include "board_faults.h"
#include "board_trace.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <climits>
#include <cstdarg>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#define PRELOADED extern "C" __attribute__((visibility("default")))

static constexpr char node_directory[] = "serdes";
static constexpr char console_directory[] = "console";
static constexpr char console_output[] = "console/output";

// The device nodes of the unit that lead into the board.
struct node_row {
    const char *path;
    const char *place; // in the board
    int kept;          // those of the caller's flags that count
    int added;
};

static constexpr node_row nodes[] = {
    {"/dev/vxserdes", node_directory, O_CLOEXEC, O_RDONLY | O_DIRECTORY},
    {"/dev/console", console_output, O_CLOEXEC | O_ACCMODE, O_APPEND},
};

// The driver's requests; what their argument points to is said behind each.
enum serdes_request : unsigned long {
    set_tx_prbs = 0x40085401,    // the mode's text
    get_state = 0x40085402,      // int32_t, filled in
    set_rx_bist = 0x40085403,    // int32_t: mode to check, or mode + 6 to stop checking it
    start_counting = 0x40085404, // nothing
    read_counter = 0x40085406,   // uint32_t, filled in
    set_rxtx_prbs = 0x40085407,
    set_rxtx_bist = 0x40085408
};
static constexpr uint32_t max_mode = 6;

// Bits per second on the line, by mode.
static constexpr std::array<double, max_mode + 1> line_rate = {0,         1.25e9,    2.48832e9, 10.3125e9,
                                                               9.95328e9, 10.3125e9, 9.95328e9};

static uint32_t number(int node, const char *name, uint32_t max, uint32_t missing) {
    char text[16];
    uint32_t value = 0;
    if (attr_read(node, name, text) != attr_state::ok || !attr_read_number(node, name, max, &value)) {
        return missing;
    }
    return value;
}

// ---- requests: 0 or an errno ----

// The driver takes the mode as text, a single digit from 0 to 6.
static int set_mode(int node, const void *argument) {
    const char *text = static_cast<const char *>(argument);
    if (text[0] < '0' || text[0] > '6' || text[1] != '\0') {
        return EINVAL;
    }
    return attr_write(node, "mode", "%c", text[0]) ? 0 : EIO;
}

static int read_state(int node, void *argument) {
    const uint32_t mode = number(node, "mode", max_mode, 0);
    const int32_t state = number(node, "ready", 1, 1) != 0 ? static_cast<int32_t>(mode) : 0;
    memcpy(argument, &state, sizeof state);
    return 0;
}

static int set_bist(int node, const void *argument) {
    int32_t value = 0;
    memcpy(&value, argument, sizeof value);
    const int32_t modes = max_mode;
    if (value < 1 || value > 2 * modes) {
        return EINVAL;
    }
    return attr_write(node, "bist", "%d", value <= modes ? value : 0) ? 0 : EIO;
}

static int start_count(int node) {
    const timespec now = board_now();
    const bool started =
        attr_write(node, "counter", "0") &&
        attr_write(node, "counting", "%lld.%09ld", static_cast<long long>(now.tv_sec), now.tv_nsec);
    return started ? 0 : EIO;
}

static int read_count(int node, void *argument) {
    double errors = number(node, "counter", UINT32_MAX, 0);
    char text[48];
    if (attr_read(node, "counting", text) == attr_state::ok && text[0] != '\0') {
        const timespec now = board_now();
        const double elapsed =
            static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) / 1e9 - strtod(text, nullptr);
        const uint32_t checked = number(node, "bist", max_mode, 0);
        const uint32_t mode = checked != 0 ? checked : number(node, "mode", max_mode, 0);
        const double ber = attr_read(node, "ber", text) == attr_state::ok ? strtod(text, nullptr) : 0;
        const double counted = std::max(elapsed, 0.0) * ber * line_rate[mode];
        errors += counted > 0 ? counted : 0; // also when the rate is no number
    }
    const uint32_t count = static_cast<uint32_t>(std::min(errors, double{UINT32_MAX}));
    memcpy(argument, &count, sizeof count);
    return 0;
}

static int serve(int node, unsigned long request, void *argument) {
    if (argument == nullptr && request != start_counting) {
        return EFAULT;
    }
    switch (request) {
    case set_tx_prbs:
    case set_rxtx_prbs:
        return set_mode(node, argument);
    case get_state:
        return read_state(node, argument);
    case set_rx_bist:
    case set_rxtx_bist:
        return set_bist(node, argument);
    case start_counting:
        return start_count(node);
    case read_counter:
        return read_count(node, argument);
    default:
        return ENOTTY;
    }
}

static bool is_node(int board, const char *place, int fd) {
    struct stat mine = {};
    struct stat theirs = {};
    return fstatat(board, place, &mine, 0) == 0 && fstat(fd, &theirs) == 0 && mine.st_dev == theirs.st_dev &&
           mine.st_ino == theirs.st_ino;
}

// The console goes to the terminal `fd`, or back if `fd` is the console itself. While one terminal has it, no other
// one gets it; a terminal that is gone has lost it.
static int redirect_console(int board, int fd) {
    const board_fd console(dir_lock(board, console_directory));
    if (console.fd < 0) {
        return ENOTTY;
    }
    if (is_node(board, console_output, fd)) {
        return attr_write(console.fd, "redirect", "%s", "") ? 0 : EIO;
    }
    char terminal[64];
    char owner[64];
    if (ttyname_r(fd, terminal, sizeof terminal) != 0) {
        return ENOTTY;
    }
    if (attr_read(console.fd, "redirect", owner) == attr_state::ok && owner[0] != '\0' &&
        access(owner, F_OK) == 0) {
        return EBUSY;
    }
    return attr_write(console.fd, "redirect", "%s", terminal) ? 0 : EIO;
}

// The requests' names in faults and trace, by number.
static constexpr std::array<const char *, 8> request_names = {
    "serdes_set_tx_prbs", "serdes_get_state",  "serdes_set_rx_bist",   "serdes_start_count",
    "serdes_5",           "serdes_read_count", "serdes_set_rxtx_prbs", "serdes_set_rxtx_bist"};

// ---- what the program calls ----

// By a path, and not through the board's directory: the descriptor must be the lowest that is free.
static int open_node(const char *root, const node_row &node, int flags) {
    char path[PATH_MAX];
    const int length = snprintf(path, sizeof path, "%s/%s", root, node.place);
    if (length < 0 || static_cast<size_t>(length) >= sizeof path) {
        errno = ENAMETOOLONG;
        return -1;
    }
    return static_cast<int>(syscall(SYS_openat, AT_FDCWD, path, (flags & node.kept) | node.added, 0));
}

static int open_path(const char *path, int flags, mode_t mode) {
    const char *root = getenv("VXBOARD");
    if (path != nullptr && root != nullptr && *root != '\0') {
        for (const node_row &node : nodes) {
            if (strcmp(path, node.path) == 0) {
                return open_node(root, node, flags);
            }
        }
    }
    return static_cast<int>(syscall(SYS_openat, AT_FDCWD, path, flags, mode));
}

// NOLINTNEXTLINE(readability-inconsistent-declaration-parameter-name): the system's header uses reserved names
PRELOADED int open(const char *path, int flags, ...) {
    mode_t mode = 0;
    if ((flags & O_CREAT) != 0 || (flags & O_TMPFILE) == O_TMPFILE) {
        va_list arguments;
        va_start(arguments, flags);
        mode = va_arg(arguments, mode_t);
        va_end(arguments);
    }
    return open_path(path, flags, mode);
}

// Where files are 64 bits wide anyway, this is the same call.
// NOLINTNEXTLINE(readability-inconsistent-declaration-parameter-name)
PRELOADED int open64(const char *path, int flags, ...) __attribute__((alias("open")));

// What ioctl gives for a request that `body` does, unless a fault is armed for it.
template <typename body_t>
static int answer(int board, const char *name, body_t body) {
    int32_t injected = 0;
    const int failure = fault_strikes(board, {.operation = name}, &injected) ? EIO : body();
    trace_call(board, name, failure == 0 ? 0 : -1);
    errno = failure != 0 ? failure : errno;
    return failure == 0 ? 0 : -1;
}

PRELOADED int ioctl(int fd, unsigned long request, ...) {
    va_list arguments;
    va_start(arguments, request);
    void *argument = va_arg(arguments, void *);
    va_end(arguments);
    if (request == TIOCCONS) {
        const board_fd board(board_open());
        return answer(board.fd, "console_redirect", [&] { return redirect_console(board.fd, fd); });
    }
    if (request >= set_tx_prbs && request < set_tx_prbs + request_names.size()) {
        const board_fd board(board_open());
        if (board.fd >= 0 && is_node(board.fd, node_directory, fd)) {
            const board_fd lock(dir_lock(board.fd, node_directory));
            return answer(board.fd, request_names[request - set_tx_prbs],
                          [&] { return serve(fd, request, argument); });
        }
    }
    return static_cast<int>(syscall(SYS_ioctl, fd, request, argument));
}

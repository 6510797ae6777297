// The virtual clock: preloaded into programs on a board, it makes sleeping free of charge. Time stands still but
// for sleeps, and each of these moves it on at once, for all processes of the board.
//
// The time is kept in the file `clock` of the board that VXBOARD names. Clocks that count processor time run as
// ever. Without a board, or if its file cannot be used, every call goes to the system.

#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/time.h>
#include <unistd.h>

#define EXPORT extern "C" __attribute__((visibility("default")))

static constexpr uint64_t second = 1'000'000'000; // in nanoseconds
static_assert(sizeof(time_t) == 8 && sizeof(long) == 8, "the system calls below take the plain timespec");

// The file's contents, in nanoseconds; shared by all processes, changed by atomic operations only.
struct clock_file {
    uint64_t base;  // the real time when the clock was made; 0 = not made yet
    uint64_t slept; // all sleeps since
};

static clock_file *mapped;  // null = not looked for yet
static clock_file no_clock; // stands for: there is none
static constexpr int no_board = -1;

static int real_gettime(clockid_t id, timespec *now) {
    return static_cast<int>(syscall(SYS_clock_gettime, id, now));
}

static int open_board() {
    const char *path = getenv("VXBOARD");
    return path == nullptr || *path == '\0' ? no_board : open(path, O_PATH | O_DIRECTORY | O_CLOEXEC);
}

static void *map_file() {
    int board = open_board();
    if (board < 0) {
        return MAP_FAILED;
    }
    int file = openat(board, "clock", O_RDWR | O_CREAT | O_CLOEXEC, 0644);
    close(board);
    if (file < 0) {
        return MAP_FAILED;
    }
    void *memory = MAP_FAILED;
    struct stat status = {};
    constexpr off_t size = sizeof(clock_file);
    // Growing a file to the same size twice is harmless, so no lock is needed.
    if (fstat(file, &status) == 0 && (status.st_size >= size || ftruncate(file, size) == 0)) {
        memory = mmap(nullptr, sizeof(clock_file), PROT_READ | PROT_WRITE, MAP_SHARED, file, 0);
    }
    close(file);
    return memory;
}

// The board's clock, or null. Finding it leaves errno alone.
static clock_file *board_clock() {
    clock_file *clock = __atomic_load_n(&mapped, __ATOMIC_ACQUIRE);
    if (clock == nullptr) {
        int error = errno;
        void *memory = map_file();
        clock = memory == MAP_FAILED ? &no_clock : static_cast<clock_file *>(memory);
        timespec now = {};
        uint64_t unset = 0;
        if (clock != &no_clock && real_gettime(CLOCK_REALTIME, &now) == 0) {
            uint64_t start = static_cast<uint64_t>(now.tv_sec) * second + static_cast<uint64_t>(now.tv_nsec);
            __atomic_compare_exchange_n(&clock->base, &unset, start, false, __ATOMIC_ACQ_REL, __ATOMIC_ACQUIRE);
        }
        clock_file *other = nullptr;
        if (!__atomic_compare_exchange_n(&mapped, &other, clock, false, __ATOMIC_ACQ_REL, __ATOMIC_ACQUIRE)) {
            if (clock != &no_clock) { // another thread was first
                munmap(memory, sizeof(clock_file));
            }
            clock = other;
        }
        errno = error;
    }
    return clock == &no_clock ? nullptr : clock;
}

static uint64_t time_of(const clock_file *clock) {
    return __atomic_load_n(&clock->base, __ATOMIC_ACQUIRE) + __atomic_load_n(&clock->slept, __ATOMIC_ACQUIRE);
}

static timespec to_timespec(uint64_t time) {
    return {.tv_sec = static_cast<time_t>(time / second), .tv_nsec = static_cast<long>(time % second)};
}

// Real time and the monotonic clocks are one here; processor time and clocks of devices are not kept.
static bool kept(clockid_t id) {
    return id >= 0 && id != CLOCK_PROCESS_CPUTIME_ID && id != CLOCK_THREAD_CPUTIME_ID;
}

static void trace_wait(uint64_t from, uint64_t length) {
    int error = errno;
    int board = open_board();
    int trace = board < 0 ? -1 : openat(board, "trace", O_WRONLY | O_APPEND | O_CLOEXEC);
    if (trace >= 0) {
        char line[96];
        int size = snprintf(line, sizeof line, "%llu.%06llu %d wait %llu\n",
                            static_cast<unsigned long long>(from / second),
                            static_cast<unsigned long long>(from % second / 1000), static_cast<int>(getpid()),
                            static_cast<unsigned long long>((length + 999) / 1000));
        if (write(trace, line, static_cast<size_t>(size)) != size) {
            // The trace is a by-product; a full disk must not change what the program sees.
        }
        close(trace);
    }
    if (board >= 0) {
        close(board);
    }
    errno = error;
}

static void pass(clock_file *clock, uint64_t length) {
    uint64_t before = __atomic_fetch_add(&clock->slept, length, __ATOMIC_ACQ_REL);
    trace_wait(__atomic_load_n(&clock->base, __ATOMIC_ACQUIRE) + before, length);
}

// Passes the time up to `until`, if it is still to come.
static void pass_until(clock_file *clock, uint64_t until) {
    uint64_t base = __atomic_load_n(&clock->base, __ATOMIC_ACQUIRE);
    uint64_t before = __atomic_load_n(&clock->slept, __ATOMIC_ACQUIRE);
    uint64_t after = 0;
    do {
        after = until > base + before ? until - base : before;
    } while (
        !__atomic_compare_exchange_n(&clock->slept, &before, after, false, __ATOMIC_ACQ_REL, __ATOMIC_ACQUIRE));
    trace_wait(base + before, after - before);
}

static bool valid(const timespec *time) {
    return time->tv_sec >= 0 && time->tv_nsec >= 0 && time->tv_nsec < static_cast<long>(second);
}

static uint64_t to_nanoseconds(const timespec *time) {
    return static_cast<uint64_t>(time->tv_sec) * second + static_cast<uint64_t>(time->tv_nsec);
}

// ---- the calls that are stood in for ----

// NOLINTBEGIN(readability-inconsistent-declaration-parameter-name): the system's headers use reserved names

EXPORT int clock_gettime(clockid_t id, timespec *now) noexcept {
    clock_file *clock = kept(id) ? board_clock() : nullptr;
    if (clock == nullptr) {
        return real_gettime(id, now);
    }
    *now = to_timespec(time_of(clock));
    return 0;
}

EXPORT int gettimeofday(timeval *now, void *zone) noexcept {
    timespec time = {};
    clock_gettime(CLOCK_REALTIME, &time);
    *now = {.tv_sec = time.tv_sec, .tv_usec = time.tv_nsec / 1000};
    if (zone != nullptr) {
        *static_cast<struct timezone *>(zone) = {};
    }
    return 0;
}

EXPORT time_t time(time_t *now) noexcept {
    timespec time = {};
    clock_gettime(CLOCK_REALTIME, &time);
    if (now != nullptr) {
        *now = time.tv_sec;
    }
    return time.tv_sec;
}

EXPORT int clock_nanosleep(clockid_t id, int flags, const timespec *request, timespec *rest) {
    clock_file *clock = kept(id) && request != nullptr ? board_clock() : nullptr;
    if (clock == nullptr) {
        int error = errno; // this call returns the error and leaves errno alone
        long result = syscall(SYS_clock_nanosleep, id, flags, request, rest);
        int failure = result == 0 ? 0 : errno;
        errno = error;
        return failure;
    }
    if (!valid(request)) {
        return EINVAL;
    }
    if ((flags & TIMER_ABSTIME) != 0) {
        pass_until(clock, to_nanoseconds(request));
    } else {
        pass(clock, to_nanoseconds(request));
    }
    return 0;
}

EXPORT int nanosleep(const timespec *request, timespec *rest) {
    int failure = clock_nanosleep(CLOCK_REALTIME, 0, request, rest);
    if (failure != 0) {
        errno = failure;
        return -1;
    }
    return 0;
}

EXPORT int usleep(useconds_t length) {
    const timespec request = {.tv_sec = length / 1'000'000,
                              .tv_nsec = static_cast<long>(length % 1'000'000) * 1000};
    return nanosleep(&request, nullptr);
}

EXPORT unsigned int sleep(unsigned int length) {
    const timespec request = {.tv_sec = static_cast<time_t>(length), .tv_nsec = 0};
    timespec rest = {};
    return nanosleep(&request, &rest) == 0 ? 0 : static_cast<unsigned int>(rest.tv_sec);
}

// NOLINTEND(readability-inconsistent-declaration-parameter-name)

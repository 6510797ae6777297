#include "stand_ins.h"

#include "harness.h"
#include "memory_board.h"

#include <cerrno>
#include <csignal>
#include <cstdarg>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <fcntl.h>
#include <string>
#include <sys/time.h>
#include <unistd.h>

extern "C" {

// ---- streams ----

static int fd_of(void *cookie) {
    return static_cast<int>(reinterpret_cast<intptr_t>(cookie));
}

static ssize_t stream_read(void *cookie, char *data, size_t size) {
    return fuzz_read(fd_of(cookie), data, size);
}

static ssize_t stream_write(void *cookie, const char *data, size_t size) {
    const ssize_t count = fuzz_write(fd_of(cookie), data, size);
    return count < 0 ? 0 : count;
}

static int stream_seek(void *cookie, off64_t *offset, int whence) {
    *offset = fuzz_lseek(fd_of(cookie), *offset, whence);
    return *offset < 0 ? -1 : 0;
}

static int stream_close(void *cookie) {
    return fuzz_close(fd_of(cookie));
}

FILE *fuzz_fopen(const char *path, const char *mode) {
    const int access = strchr(mode, '+') != nullptr ? O_RDWR : mode[0] == 'r' ? O_RDONLY : O_WRONLY;
    const int fresh = mode[0] == 'w' ? O_CREAT | O_TRUNC : mode[0] == 'a' ? O_CREAT | O_APPEND : 0;
    const int fd = fuzz_open(path, access | fresh);
    if (fd < 0) {
        return nullptr;
    }
    // NOLINTNEXTLINE(performance-no-int-to-ptr): the cookie is the descriptor, so that nothing is left to release
    return fopencookie(reinterpret_cast<void *>(static_cast<intptr_t>(fd)), mode,
                       {stream_read, stream_write, stream_seek, stream_close});
}

// ---- commands, processes, devices, time ----

static void put_file(const char *path, const std::string &contents) {
    const int fd = fuzz_open(path, O_WRONLY | O_CREAT | O_TRUNC);
    fuzz_write(fd, contents.data(), contents.size());
    fuzz_close(fd);
}

static std::string get_file(const char *path) {
    std::string contents(65536, '\0');
    const int fd = fuzz_open(path, O_RDONLY);
    const ssize_t size = fuzz_read(fd, contents.data(), contents.size());
    fuzz_close(fd);
    return contents.substr(0, size > 0 ? static_cast<size_t>(size) : 0);
}

// No command is run. The tool keeps its state with "echo", "cp" and "dd", so these are carried out on the board. No
// word from outside may come to the shell with more than a name's characters.
int fuzz_system(const char *command) {
    must(strpbrk(command, ";|`$'\"\\\n*?(){}[]~#!") == nullptr, "words mean nothing to the shell");
    char from[64] = "";
    char to[64] = "";
    if (sscanf(command, "echo %63s > %63s", from, to) == 2) {
        put_file(to, std::string(from) + "\n");
    } else if (sscanf(command, "cp %63s %63s", from, to) == 2 && fuzz_access(from, F_OK) == 0) {
        put_file(to, get_file(from));
    } else if (sscanf(command, "dd if=/dev/zero of=%63s bs=1k count=4", to) == 1) {
        put_file(to, std::string(4096, '\0'));
    }
    return 0;
}

// What a command would have printed is in the board's file "shell".
FILE *fuzz_popen(const char *, const char *) {
    return fuzz_fopen("/board/shell", "r");
}

int fuzz_pclose(FILE *stream) {
    return fclose(stream);
}

int fuzz_sigqueue(pid_t, int, sigval) {
    return 0;
}

pid_t fuzz_getpid() {
    return 4711;
}

const char *fuzz_getenv(const char *name) {
    return strcmp(name, "VXBOARD") == 0 ? "/board" : nullptr;
}

// Requests of the SerDes driver: some text, or 32 bits in or out. What comes out, and whether, changes from call to
// call.
int fuzz_ioctl(int fd, unsigned long request, ...) {
    va_list arguments;
    va_start(arguments, request);
    void *argument = va_arg(arguments, void *);
    va_end(arguments);
    const std::string path = board_path_of(fd);
    if (path == "console/output") {
        return 0;
    }
    if (path != "serdes/mode") {
        errno = ENOTTY;
        return -1;
    }
    board_now_us++;
    uint32_t value = static_cast<uint32_t>(board_now_us) * 2654435761U;
    switch (request & 0xFF) {
    case 1:
    case 7:
        value ^= static_cast<uint32_t>(strlen(static_cast<char *>(argument)));
        break;
    case 3:
    case 8:
        value ^= *static_cast<const uint32_t *>(argument);
        break;
    case 2:
    case 6:
        memcpy(argument, &value, sizeof value);
        break;
    default:
        break;
    }
    return value >> 30 == 0 ? -1 : 0;
}

int fuzz_clock_gettime(clockid_t, timespec *time) {
    board_now_us++;
    *time = {board_now_us / 1'000'000, board_now_us % 1'000'000 * 1000};
    return 0;
}

int fuzz_gettimeofday(timeval *time, void *) {
    board_now_us++;
    *time = {board_now_us / 1'000'000, board_now_us % 1'000'000};
    return 0;
}

int fuzz_usleep(useconds_t microseconds) {
    board_now_us += microseconds;
    return 0;
}

unsigned fuzz_sleep(unsigned seconds) {
    board_now_us += int64_t{1'000'000} * seconds;
    return 0;
}

} // extern "C"

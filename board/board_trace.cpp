#include "board_trace.h"

#include "board_dir.h"

#include <cstdarg>
#include <cstdio>
#include <fcntl.h>
#include <unistd.h>

timespec board_now() {
    timespec now = {};
    clock_gettime(CLOCK_REALTIME, &now);
    return now;
}

// One write(2) a line: with O_APPEND the lines of several processes never mix.
static void append(int file, const timespec &when, const char *text) {
    char line[1024]; // holds the longest transfer: 256 bytes of three characters, and the words before them
    int length = snprintf(line, sizeof line, "%lld.%06ld %d %s\n", static_cast<long long>(when.tv_sec),
                          when.tv_nsec / 1000, static_cast<int>(getpid()), text);
    if (length > 0 && static_cast<size_t>(length) < sizeof line) {
        file_write(file, {reinterpret_cast<const uint8_t *>(line), static_cast<size_t>(length)});
    }
}

static int trace_open(int board) {
    return openat(board, "trace", O_WRONLY | O_APPEND | O_CLOEXEC);
}

void trace_line(int board, const timespec &when, const char *format, ...) {
    board_fd file(trace_open(board));
    if (file.fd < 0) {
        return;
    }
    char text[128];
    va_list arguments;
    va_start(arguments, format);
    vsnprintf(text, sizeof text, format, arguments);
    va_end(arguments);
    append(file.fd, when, text);
}

void trace_call(int board, const char *operation, int32_t result) {
    trace_line(board, board_now(), "call %s %d", operation, result);
}

void trace_transfer(int board, const timespec &when, const char *text, std::span<const uint8_t> bytes) {
    board_fd file(trace_open(board));
    if (file.fd < 0) {
        return;
    }
    char line[128 + 256 * 3];
    int length = snprintf(line, 128, "%s", text);
    char *end = line + (length < 0 ? 0 : length < 128 ? length : 127);
    for (uint8_t byte : bytes.first(bytes.size() < 256 ? bytes.size() : 256)) {
        end += snprintf(end, 4, " %02x", byte);
    }
    append(file.fd, when, line);
}

// Logging and the debug level.

#include "board_call.h"

#include "libvx.h"

#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <fcntl.h>

int32_t libvx_DbgLevel = 0;

void libvx_setDebugLevel(int32_t level) {
    libvx_DbgLevel = level;
    board_fd board(board_open());
    trace_call(board.fd, __func__, LIBVX_RET_OK);
}

static const char *known(const char *text) {
    return text == nullptr ? "?" : text;
}

[[gnu::format(printf, 5, 6)]] void libvx_logPrint(const char *tag, const char *file, const char *func, int32_t line,
                                                  const char *format, ...) {
    board_fd board(board_open());
    if (board.fd < 0) {
        return;
    }
    char message[512]; // a longer one is cut
    va_list arguments;
    va_start(arguments, format);
    vsnprintf(message, sizeof message, format == nullptr ? "?" : format, arguments);
    va_end(arguments);
    message[strcspn(message, "\n")] = '\0'; // one message is one line

    char text[1024];
    const timespec now = board_now();
    int length = snprintf(text, sizeof text, "%lld.%06ld %s: %s:%d %s: %s\n", static_cast<long long>(now.tv_sec),
                          now.tv_nsec / 1000, known(tag), known(file), line, known(func), message);
    if (length > 0 && static_cast<size_t>(length) < sizeof text) {
        board_fd log(openat(board.fd, "log", O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC, 0644));
        if (log.fd >= 0) {
            file_write(log.fd, {reinterpret_cast<const uint8_t *>(text), static_cast<size_t>(length)});
        }
    }
    trace_call(board.fd, __func__, LIBVX_RET_OK);
}

#include "board_dir.h"

#include <cerrno>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

board_fd::~board_fd() {
    if (fd >= 0) {
        close(fd);
    }
}

int board_open() {
    const char *path = getenv("VXBOARD");
    if (path == nullptr || *path == '\0') {
        return -1;
    }
    return open(path, O_RDONLY | O_DIRECTORY | O_CLOEXEC);
}

int fd_lock(int fd) {
    while (fd >= 0 && flock(fd, LOCK_EX) != 0) {
        if (errno != EINTR) {
            close(fd);
            return -1;
        }
    }
    return fd;
}

int dir_lock(int dir, const char *name) {
    return fd_lock(openat(dir, name, O_RDONLY | O_DIRECTORY | O_CLOEXEC));
}

ptrdiff_t file_read(int fd, std::span<uint8_t> data) {
    size_t done = 0;
    while (done < data.size()) {
        ssize_t n = read(fd, data.data() + done, data.size() - done);
        if (n < 0 && errno == EINTR) {
            continue;
        }
        if (n < 0) {
            return -1;
        }
        if (n == 0) {
            break;
        }
        done += static_cast<size_t>(n);
    }
    return static_cast<ptrdiff_t>(done);
}

bool file_write(int fd, std::span<const uint8_t> data) {
    size_t done = 0;
    while (done < data.size()) {
        ssize_t n = write(fd, data.data() + done, data.size() - done);
        if (n < 0 && errno == EINTR) {
            continue;
        }
        if (n <= 0) {
            return false;
        }
        done += static_cast<size_t>(n);
    }
    return true;
}

bool file_read_at(int fd, uint32_t offset, std::span<uint8_t> data) {
    return lseek(fd, offset, SEEK_SET) == offset && file_read(fd, data) == static_cast<ptrdiff_t>(data.size());
}

bool file_write_at(int fd, uint32_t offset, std::span<const uint8_t> data) {
    return lseek(fd, offset, SEEK_SET) == offset && file_write(fd, data);
}

bool file_replace(int dir, const char *name, std::span<const uint8_t> data, bool synced) {
    char fresh[64]; // one name for all: the lock keeps others away, and a killed writer's rest is written over
    int length = snprintf(fresh, sizeof fresh, ".%s.new", name);
    if (length < 0 || static_cast<size_t>(length) >= sizeof fresh) {
        return false;
    }
    bool ok = false;
    {
        board_fd file(openat(dir, fresh, O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644));
        ok = file.fd >= 0 && fchmod(file.fd, 0644) == 0 && file_write(file.fd, data) &&
             (!synced || fsync(file.fd) == 0);
    }
    if (ok && renameat(dir, fresh, dir, name) == 0) {
        return true;
    }
    unlinkat(dir, fresh, 0);
    return false;
}

attr_state attr_read(int dir, const char *name, std::span<char> text) {
    board_fd file(openat(dir, name, O_RDONLY | O_CLOEXEC));
    if (file.fd < 0) {
        return errno == ENOENT ? attr_state::missing : attr_state::damaged;
    }
    ptrdiff_t got = file_read(file.fd, {reinterpret_cast<uint8_t *>(text.data()), text.size()});
    if (got < 0 || static_cast<size_t>(got) == text.size()) {
        return attr_state::damaged;
    }
    size_t length = static_cast<size_t>(got);
    if (length > 0 && text[length - 1] == '\n') {
        length--;
    }
    text[length] = '\0';
    return strlen(text.data()) == length ? attr_state::ok : attr_state::damaged;
}

bool attr_read_number(int dir, const char *name, uint32_t max, uint32_t *value) {
    char text[16];
    *value = 0;
    attr_state state = attr_read(dir, name, text);
    if (state != attr_state::ok) {
        return state == attr_state::missing;
    }
    uint64_t number = 0;
    for (const char *c = text; *c != '\0'; c++) {
        if (*c < '0' || *c > '9') {
            return false;
        }
        number = number * 10 + static_cast<uint64_t>(*c - '0');
    }
    if (number > max) {
        return false;
    }
    *value = static_cast<uint32_t>(number);
    return true;
}

struct attr_text {
    char text[65]; // one more than an attribute has, for the NUL
    size_t length; // with the newline; 0: it does not fit

    [[gnu::format(printf, 2, 0)]] attr_text(const char *format, va_list arguments) : length(0) {
        const int printed = vsnprintf(text, sizeof text - 1, format, arguments);
        if (printed >= 0 && static_cast<size_t>(printed) < sizeof text - 1) {
            length = static_cast<size_t>(printed);
            text[length++] = '\n';
        }
    }

    std::span<const uint8_t> bytes() const { return {reinterpret_cast<const uint8_t *>(text), length}; }
};

bool attr_write(int dir, const char *name, const char *format, ...) {
    va_list arguments;
    va_start(arguments, format);
    const attr_text text(format, arguments);
    va_end(arguments);
    return text.length > 0 && file_replace(dir, name, text.bytes());
}

static bool write_over(int dir, const char *name, std::span<const uint8_t> text) {
    board_fd file(openat(dir, name, O_WRONLY | O_CLOEXEC));
    struct stat status = {};
    return file.fd >= 0 && fstat(file.fd, &status) == 0 && status.st_size == static_cast<off_t>(text.size()) &&
           file_write(file.fd, text);
}

bool attr_update(int dir, const char *name, const char *format, ...) {
    va_list arguments;
    va_start(arguments, format);
    const attr_text text(format, arguments);
    va_end(arguments);
    return text.length > 0 && (write_over(dir, name, text.bytes()) || file_replace(dir, name, text.bytes()));
}

bool attr_set_number(int board, const char *directory, const char *name, uint32_t value) {
    const board_fd dir(dir_lock(board, directory));
    return dir.fd >= 0 && attr_write(dir.fd, name, "%u", value);
}

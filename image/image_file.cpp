// Bounded reads and atomic writes.
#include "vximage.h"

#include <cerrno>
#include <climits>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

output_s output;

void output_s::clear() {
    size = 0;
    ok = true;
}

void output_s::add(std::string_view text) {
    const size_t room = data.size() - size;
    ok = ok && text.size() <= room;
    text = slice(text, 0, room);
    memcpy(data.data() + size, text.data(), text.size());
    size += text.size();
}

void output_s::add_format(const char *format, ...) {
    char text[128];
    va_list words;
    va_start(words, format);
    vsnprintf(text, sizeof text, format, words);
    va_end(words);
    add(text);
}

static bool is_dash(const char *path) {
    return strcmp(path, "-") == 0;
}

// ---- reading ----

// A descriptor that closes itself.
struct open_file {
    explicit open_file(int opened) : fd(opened) {}
    open_file(const open_file &) = delete;
    open_file &operator=(const open_file &) = delete;
    ~open_file() {
        if (fd > STDERR_FILENO) {
            close(fd);
        }
    }

    int fd;
};

static bool is_plain_file(int fd, const char *path) {
    struct stat status;
    if (fstat(fd, &status) != 0) {
        complain("%s: %s", path, strerror(errno));
        return false;
    }
    if (!S_ISREG(status.st_mode)) {
        complain("%s: %s", path,
                 S_ISDIR(status.st_mode) ? "is a directory, not an image" : "is no regular file: use - and \"<\"");
        return false;
    }
    return true;
}

std::optional<std::string_view> file_read(const char *path) {
    static std::array<char, FILE_LIMIT + 1> buffer;
    // Opening a FIFO must not wait for its other end.
    const open_file file(is_dash(path) ? STDIN_FILENO : open(path, O_RDONLY | O_CLOEXEC | O_NOCTTY | O_NONBLOCK));
    if (file.fd < 0) {
        complain("%s: %s", path, strerror(errno));
        return std::nullopt;
    }
    if (!is_dash(path) && !is_plain_file(file.fd, path)) {
        return std::nullopt;
    }
    size_t size = 0;
    while (size < buffer.size()) {
        const ssize_t count = read(file.fd, buffer.data() + size, buffer.size() - size);
        if (count < 0 && errno == EINTR) {
            continue;
        }
        if (count < 0) {
            complain("%s: %s", path, strerror(errno));
            return std::nullopt;
        }
        if (count == 0) {
            return std::string_view(buffer.data(), size);
        }
        size += static_cast<size_t>(count);
    }
    complain("%s: more than %zu bytes are no image", path, FILE_LIMIT);
    return std::nullopt;
}

// ---- writing ----

static bool write_all(int fd, std::string_view data) {
    while (!data.empty()) {
        const ssize_t count = write(fd, data.data(), data.size());
        if (count < 0 && errno != EINTR) {
            return false;
        }
        data.remove_prefix(count < 0 ? 0 : static_cast<size_t>(count));
    }
    return true;
}

// Where a write to `path` goes: the end of its links. What is there must be a regular file, or nothing.
static bool find_target(const char *path, char (&target)[PATH_MAX], struct stat *status) {
    *status = {};
    if (realpath(path, target) != nullptr) {
        if (stat(target, status) != 0 || access(target, W_OK) != 0) {
            complain("%s: %s", path, strerror(errno));
            return false;
        }
        if (!S_ISREG(status->st_mode)) {
            complain("%s: is no regular file: use - and \">\"", path);
            return false;
        }
        return true;
    }
    struct stat link;
    if (errno != ENOENT || lstat(path, &link) == 0 || strlen(path) >= sizeof target) {
        complain("%s: %s", path, strerror(errno));
        return false;
    }
    memcpy(target, path, strlen(path) + 1);
    return true;
}

// Fills the new file with what the old one is to become.
static bool fill(int fd, const struct stat &old, std::string_view data) {
    mode_t mode = old.st_mode & 07777;
    if (old.st_nlink == 0) {
        const mode_t mask = umask(0);
        umask(mask);
        mode = 0666 & ~mask;
    } else if (fchown(fd, old.st_uid, old.st_gid) != 0) {
        mode &= 0777; // somebody else's file becomes ours
    }
    return fchmod(fd, mode) == 0 && write_all(fd, data) && fsync(fd) == 0;
}

bool file_write(const char *path, std::string_view data) {
    if (is_dash(path)) {
        return fwrite(data.data(), 1, data.size(), stdout) == data.size(); // main() looks for errors
    }
    char target[PATH_MAX];
    char temporary[PATH_MAX + 8];
    struct stat old;
    if (!find_target(path, target, &old)) {
        return false;
    }
    snprintf(temporary, sizeof temporary, "%s.XXXXXX", target);
    const open_file file(mkostemp(temporary, O_CLOEXEC));
    if (file.fd < 0) {
        complain("%s: cannot make a file beside it: %s", path, strerror(errno));
        return false;
    }
    if (!fill(file.fd, old, data) || rename(temporary, target) != 0) {
        complain("%s: %s", path, strerror(errno));
        unlink(temporary);
        return false;
    }
    return true;
}

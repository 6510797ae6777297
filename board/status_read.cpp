#include "status_read.h"

#include "board_dir.h"
#include "text_front.h"

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

// Opens no pipe to wait at, no device, no link.
static int open_plain(int board, const char *path) {
    const int fd = openat(board, path, O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC);
    struct stat status = {};
    if (fd >= 0 && (fstat(fd, &status) != 0 || !S_ISREG(status.st_mode))) {
        close(fd);
        return -1;
    }
    return fd;
}

ptrdiff_t read_bytes(int board, const char *path, std::span<char> bytes) {
    const board_fd file(open_plain(board, path));
    return file.fd < 0 ? -1 : file_read(file.fd, {reinterpret_cast<uint8_t *>(bytes.data()), bytes.size()});
}

bool is_printable(std::string_view text) {
    return std::ranges::all_of(text, [](char c) { return c >= ' ' && c <= '~'; });
}

shown_attribute read_attribute(int board, const char *path) {
    shown_attribute shown = {.text = "damaged", .ok = false};
    char text[sizeof shown.text];
    const ptrdiff_t got = read_bytes(board, path, text);
    if (got < 0) {
        struct stat status = {};
        if (fstatat(board, path, &status, AT_SYMLINK_NOFOLLOW) != 0 && errno == ENOENT) {
            strcpy(shown.text, "?");
        }
        return shown;
    }
    size_t length = static_cast<size_t>(got);
    if (length > 0 && text[length - 1] == '\n') {
        length--;
    }
    if (length == 0) {
        strcpy(shown.text, "empty");
    } else if (length < sizeof shown.text && is_printable({text, length})) {
        memcpy(shown.text, text, length);
        shown.text[length] = '\0';
        shown.ok = true;
    }
    return shown;
}

shown_attribute read_attribute(int board, const char *directory, const char *name) {
    char path[128];
    snprintf(path, sizeof path, "%s/%s", directory, name);
    return read_attribute(board, path);
}

bool to_numbers(const shown_attribute &shown, std::span<uint32_t> numbers) {
    const char *at = shown.text;
    const char *end = at + strlen(at);
    const auto is_blank = [](char c) { return c == ' '; };
    bool ok = shown.ok;
    for (uint32_t &number : numbers) {
        const std::from_chars_result result = std::from_chars(std::find_if_not(at, end, is_blank), end, number);
        ok = ok && result.ec == std::errc() && (result.ptr == end || is_blank(*result.ptr));
        at = result.ptr;
    }
    return ok && std::all_of(at, end, is_blank);
}

std::string_view take_line(std::string_view *text) {
    const std::string_view line = text_front(*text, text->find('\n'));
    *text = text_behind(*text, line.size() + 1);
    return line;
}

// Unlike substr it cannot throw, which would need the C++ library.
std::string_view text_behind(std::string_view text, size_t count) {
    text.remove_prefix(std::min(count, text.size()));
    return text;
}

static std::string_view trim(std::string_view text) {
    text = text_behind(text, text.find_first_not_of(" \t\r"));
    text.remove_suffix(text.size() - (text.find_last_not_of(" \t\r") + 1));
    return text;
}

std::string_view find_field(std::string_view text, std::string_view key) {
    while (!text.empty()) {
        const std::string_view line = take_line(&text);
        const size_t sign = line.find('=');
        if (sign != std::string_view::npos && trim(text_front(line, sign)) == key) {
            const std::string_view value = trim(text_behind(line, sign + 1));
            return is_printable(value) ? value : std::string_view("damaged");
        }
    }
    return {};
}

name_list list_names(int board, const char *directory) {
    name_list list = {};
    const int fd = openat(board, directory, O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    DIR *dir = fd < 0 ? nullptr : fdopendir(fd);
    if (dir == nullptr) {
        list.damaged = errno != ENOENT;
        return list;
    }
    const dirent *entry = nullptr;
    while (list.count < std::size(list.names) && (entry = readdir(dir)) != nullptr) {
        const size_t length = strlen(entry->d_name);
        if (entry->d_name[0] != '.' && length < sizeof list.names[0] && is_printable(entry->d_name)) {
            memcpy(list.names[list.count++], entry->d_name, length + 1);
        }
    }
    closedir(dir);
    qsort(list.names, list.count, sizeof list.names[0], [](const void *a, const void *b) {
        return strverscmp(static_cast<const char *>(a), static_cast<const char *>(b));
    });
    return list;
}

bool read_link(int board, const char *path, std::span<char> target) {
    const ssize_t length = readlinkat(board, path, target.data(), target.size() - 1);
    target[length < 0 ? 0 : static_cast<size_t>(length)] = '\0';
    for (char &c : target.first(strlen(target.data()))) {
        c = c < ' ' || c > '~' ? '?' : c;
    }
    return length >= 0;
}

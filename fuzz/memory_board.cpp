#include "memory_board.h"

#include "stand_ins.h"

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <ftw.h>
#include <iterator>
#include <map>
#include <memory>
#include <set>
#include <sys/stat.h>
#include <unistd.h>

namespace {

// ---- the board's files, by their path in the board; "" is the board itself ----

struct file_node {
    bool directory;
    std::string data;
    bool made = false; // as the board was made, for good
};
using node_ref = std::shared_ptr<file_node>;

struct open_file {
    node_ref node; // null: not open
    std::string path;
    off_t place;
    bool append;
};

constexpr size_t file_max = 1 << 20; // then the disk is full
constexpr size_t open_max = 64;
constexpr int first_fd = 1000; // no descriptor of the host is meant by any number from here on
constexpr time_t start_time = 1'800'000'000;

using node_map = std::map<std::string, node_ref>;

// A board as it is made, never changed.
struct made_board {
    node_map nodes;
    std::vector<std::string> files;
};

std::map<std::string, made_board, std::less<>> made_boards; // by profile, those that were asked for
const made_board *made = nullptr;                           // the profile in use
node_map nodes;                                             // the board as it is
std::set<std::string> changed;                              // where the two may differ
std::vector<open_file> open_files(open_max);

// Where a path of the unit is in the board.
struct view_row {
    std::string_view unit, board;
};
constexpr view_row view[] = {
    {"/var", "unit/var"},
    {"/etc", "unit/etc"},
    {"/userconfig", "unit/userconfig"},
    {"/tmp", "unit/tmp"},
    {"/lib/firmware", "unit/lib/firmware"},
    {"/proc/bus/pci", "unit/proc/bus/pci"},
    {"/sys/class/leds", "led"},
    {"/dev/vxserdes", "serdes/mode"},
    {"/dev/console", "console/output"},
    {"/board", ""},
};

bool is_below(std::string_view path, std::string_view directory) {
    return path.starts_with(directory) && (path.size() == directory.size() || path[directory.size()] == '/');
}

// The same path without "." and empty parts; ".." does not lead anywhere.
std::string plain(std::string_view path) {
    std::string out;
    while (!path.empty()) {
        const size_t slash = std::min(path.find('/'), path.size());
        const std::string_view part = path.substr(0, slash);
        path.remove_prefix(std::min(slash + 1, path.size()));
        if (!part.empty() && part != ".") {
            out += (out.empty() ? "" : "/") + std::string(part);
        }
    }
    return out;
}

open_file *opened(int fd) {
    const auto index = static_cast<size_t>(fd - first_fd);
    if (fd < first_fd || index >= open_files.size() || !open_files[index].node) {
        errno = EBADF;
        return nullptr;
    }
    return &open_files[index];
}

// False, with errno set, for what is not on the unit.
bool place_of(int dir, const char *path, std::string *place) {
    if (path[0] == '/') {
        for (const view_row &row : view) {
            if (is_below(path, row.unit)) {
                *place = plain(std::string(row.board) + std::string(path + row.unit.size()));
                return true;
            }
        }
        errno = ENOENT;
        return false;
    }
    const open_file *from = opened(dir);
    if (from == nullptr) {
        return false;
    }
    *place = plain(from->path + "/" + path);
    return true;
}

node_ref find_node(const std::string &place) {
    const auto found = nodes.find(place);
    return found != nodes.end() ? found->second : nullptr;
}

std::string parent_of(const std::string &place) {
    const size_t slash = place.rfind('/');
    return slash == std::string::npos ? "" : place.substr(0, slash);
}

void set_node(const std::string &place, node_ref node) {
    changed.insert(place);
    if (node) {
        nodes[place] = std::move(node);
    } else {
        nodes.erase(place);
    }
}

// The file to write to, the board's own copy of the one that was made.
node_ref writable(const std::string &place, node_ref node) {
    if (node->made) {
        node = std::make_shared<file_node>(file_node{false, node->data});
        set_node(place, node);
    }
    return node;
}

int open_place(const std::string &place, int flags) {
    node_ref node = find_node(place);
    const bool writes = (flags & O_ACCMODE) != O_RDONLY;
    const auto fail = [](int error) { return errno = error, -1; };
    if (!node) {
        const node_ref parent = find_node(parent_of(place));
        if ((flags & O_CREAT) == 0 || !parent || !parent->directory) {
            return fail(ENOENT);
        }
        node = std::make_shared<file_node>(file_node{false, ""});
        set_node(place, node);
    } else if (node->directory ? writes : (flags & O_DIRECTORY) != 0) {
        return fail(node->directory ? EISDIR : ENOTDIR);
    } else if (writes) {
        node = writable(place, node);
    }
    if (writes && (flags & O_TRUNC) != 0) {
        node->data.clear();
    }
    const auto free_one = std::ranges::find_if(open_files, [](const open_file &file) { return !file.node; });
    if (free_one == open_files.end()) {
        return fail(EMFILE);
    }
    *free_one = {node, place, 0, (flags & O_APPEND) != 0};
    return first_fd + static_cast<int>(free_one - open_files.begin());
}

// ---- the pristine boards ----

made_board load_profile(std::string_view profile) {
    namespace fs = std::filesystem;
    const fs::path root = fs::path(FUZZ_PROFILES) / profile;
    if (profile.empty() || !fs::is_directory(root)) {
        fprintf(stderr, "no profile at %s: build the preset \"fuzz\" first\n", root.c_str());
        _exit(2);
    }
    made_board board;
    board.nodes[""] = std::make_shared<file_node>(file_node{true, "", true});
    for (const fs::directory_entry &entry : fs::recursive_directory_iterator(root)) {
        const std::string place = entry.path().lexically_relative(root).string();
        auto node = std::make_shared<file_node>(file_node{entry.is_directory(), "", true});
        if (!node->directory) {
            std::ifstream file(entry.path(), std::ios::binary);
            node->data.assign(std::istreambuf_iterator<char>(file), {});
            board.files.push_back(place);
        }
        board.nodes[place] = std::move(node);
    }
    std::ranges::sort(board.files);
    return board;
}

} // namespace

int64_t board_now_us;

void board_reset(std::string_view profile) {
    board_end_process();
    auto found = made_boards.find(profile);
    if (found == made_boards.end()) {
        found = made_boards.emplace(profile, load_profile(profile)).first;
    }
    if (made != &found->second) {
        made = &found->second;
        nodes = made->nodes;
        changed.clear();
    }
    for (const std::string &place : changed) {
        const auto original = made->nodes.find(place);
        if (original != made->nodes.end()) {
            nodes[place] = original->second;
        } else {
            nodes.erase(place);
        }
    }
    changed.clear();
    board_now_us = int64_t{start_time} * 1'000'000;
}

const std::vector<std::string> &board_profiles() {
    static const std::vector<std::string> names = [] {
        std::vector<std::string> found;
        for (const auto &entry : std::filesystem::directory_iterator(FUZZ_PROFILES)) {
            found.push_back(entry.path().filename().string());
        }
        std::ranges::sort(found);
        return found;
    }();
    return names;
}

const std::vector<std::string> &board_files() {
    static const std::vector<std::string> none;
    return made != nullptr ? made->files : none;
}

void board_put(std::string_view path, std::string_view contents) {
    const std::string place = plain(path);
    for (std::string above = parent_of(place); !above.empty(); above = parent_of(above)) {
        const node_ref node = find_node(above);
        if (node && !node->directory) {
            return;
        }
        if (!node) {
            set_node(above, std::make_shared<file_node>(file_node{true, ""}));
        }
    }
    const node_ref node = find_node(place);
    if (!place.empty() && (!node || !node->directory)) {
        set_node(place, std::make_shared<file_node>(file_node{false, std::string(contents.substr(0, file_max))}));
    }
}

std::string board_get(std::string_view path) {
    const node_ref node = find_node(plain(path));
    return node ? node->data : "";
}

std::string board_path_of(int fd) {
    const open_file *file = opened(fd);
    return file != nullptr ? file->path : "";
}

bool board_has_leftovers() {
    return std::ranges::any_of(changed, [](const std::string &place) {
        return place.substr(place.rfind('/') + 1).starts_with('.') && find_node(place);
    });
}

size_t board_end_process() {
    size_t left_open = 0;
    for (open_file &file : open_files) {
        left_open += file.node ? 1 : 0;
        file.node.reset();
    }
    board_now_us += 1'000'000;
    return left_open;
}

// ---- the stand-ins: see redirect.h ----

extern "C" {

int fuzz_openat(int dir, const char *path, int flags, ...) {
    std::string place;
    return place_of(dir, path, &place) ? open_place(place, flags) : -1;
}

int fuzz_open(const char *path, int flags, ...) {
    return fuzz_openat(AT_FDCWD, path, flags);
}

int fuzz_close(int fd) {
    open_file *file = opened(fd);
    if (file == nullptr) {
        return -1;
    }
    file->node.reset();
    return 0;
}

ssize_t fuzz_read(int fd, void *data, size_t size) {
    open_file *file = opened(fd);
    if (file == nullptr || file->node->directory) {
        return -1;
    }
    const std::string &from = file->node->data;
    const size_t start = std::min(static_cast<size_t>(file->place), from.size());
    const size_t count = std::min(size, from.size() - start);
    memcpy(data, from.data() + start, count);
    file->place += static_cast<off_t>(count);
    return static_cast<ssize_t>(count);
}

ssize_t fuzz_write(int fd, const void *data, size_t size) {
    open_file *file = opened(fd);
    if (file == nullptr || file->node->directory) {
        return -1;
    }
    std::string &to = file->node->data;
    const size_t start = file->append ? to.size() : static_cast<size_t>(file->place);
    if (start + size > file_max) {
        errno = ENOSPC;
        return -1;
    }
    to.resize(std::max(to.size(), start + size));
    memcpy(to.data() + start, data, size);
    file->place = static_cast<off_t>(start + size);
    return static_cast<ssize_t>(size);
}

off_t fuzz_lseek(int fd, off_t offset, int whence) {
    open_file *file = opened(fd);
    if (file == nullptr) {
        return -1;
    }
    const off_t from = whence == SEEK_SET   ? 0
                       : whence == SEEK_CUR ? file->place
                                            : static_cast<off_t>(file->node->data.size());
    if (offset < -from) {
        errno = EINVAL;
        return -1;
    }
    return file->place = from + offset;
}

static int tell_status(const file_node &node, struct stat *status) {
    *status = {};
    status->st_mode = node.directory ? S_IFDIR | 0755 : S_IFREG | 0644;
    status->st_size = static_cast<off_t>(node.data.size());
    return 0;
}

int fuzz_fstat(int fd, struct stat *status) {
    const open_file *file = opened(fd);
    return file != nullptr ? tell_status(*file->node, status) : -1;
}

int fuzz_fstatat(int dir, const char *path, struct stat *status, int) {
    std::string place;
    const auto node = place_of(dir, path, &place) ? find_node(place) : nullptr;
    if (node == nullptr) {
        errno = ENOENT;
        return -1;
    }
    return tell_status(*node, status);
}

int fuzz_fchmod(int fd, mode_t) {
    return opened(fd) != nullptr ? 0 : -1;
}

int fuzz_fsync(int fd) {
    return opened(fd) != nullptr ? 0 : -1;
}

int fuzz_flock(int fd, int) {
    return opened(fd) != nullptr ? 0 : -1;
}

int fuzz_faccessat(int dir, const char *path, int, int) {
    std::string place;
    if (!place_of(dir, path, &place) || !find_node(place)) {
        errno = ENOENT;
        return -1;
    }
    return 0;
}

int fuzz_access(const char *path, int mode) {
    return fuzz_faccessat(AT_FDCWD, path, mode, 0);
}

int fuzz_mkdirat(int dir, const char *path, mode_t) {
    std::string place;
    if (!place_of(dir, path, &place) || find_node(place) || !find_node(parent_of(place))) {
        errno = ENOENT;
        return -1;
    }
    set_node(place, std::make_shared<file_node>(file_node{true, ""}));
    return 0;
}

int fuzz_renameat(int from_dir, const char *from, int to_dir, const char *to) {
    std::string from_place;
    std::string to_place;
    if (!place_of(from_dir, from, &from_place) || !place_of(to_dir, to, &to_place)) {
        return -1;
    }
    const node_ref node = find_node(from_place);
    const node_ref target = find_node(to_place);
    if (!node || node->directory || (target && target->directory)) {
        errno = ENOENT;
        return -1;
    }
    set_node(to_place, node);
    set_node(from_place, nullptr);
    return 0;
}

// Of a file, or of a directory, which is never met with anything in it.
int fuzz_unlinkat(int dir, const char *path, int) {
    std::string place;
    if (!place_of(dir, path, &place) || !find_node(place)) {
        errno = ENOENT;
        return -1;
    }
    set_node(place, nullptr);
    return 0;
}

int fuzz_remove(const char *path) {
    return fuzz_unlinkat(AT_FDCWD, path, 0);
}

// The walk that removes a tree: what is in a directory comes before it.
int fuzz_nftw(const char *path, __nftw_func_t entry, int, int) {
    std::string top;
    if (!place_of(AT_FDCWD, path, &top) || !find_node(top)) {
        return -1;
    }
    std::vector<std::string> below;
    for (const auto &[place, node] : nodes) {
        if (is_below(place, top)) {
            below.push_back(place.substr(top.size()));
        }
    }
    int result = 0;
    for (auto place = below.rbegin(); result == 0 && place != below.rend(); ++place) {
        FTW where = {};
        where.level = static_cast<int>(std::ranges::count(*place, '/'));
        const struct stat status = {};
        result = entry((path + *place).c_str(), &status, FTW_DP, &where);
    }
    return result;
}

} // extern "C"

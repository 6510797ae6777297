#include "sysinfo_store.h"

#include "board_dir.h"
#include "flash.h"

#include "libvx.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fcntl.h>

static constexpr char info_dir[] = "/etc"; // its lock is the store's
static constexpr char info_name[] = "vx_sys_info";
static constexpr size_t info_size = sysinfo_partition_size / flash_banks - flash_bank_header; // at most
static constexpr size_t key_max = 63;

// ---- the keys ----

struct key_row {
    const char *key;
    size_t size; // of its values, with their NUL
};

// All others have short values.
static constexpr key_row key_rows[] = {
    {"OUI", LIBVX_SYS_TEXT_SIZE},         {"SN", LIBVX_SYS_SERIAL_SIZE},
    {"ModelName", LIBVX_SYS_TEXT_SIZE},   {"ModelId", LIBVX_SYS_TEXT_SIZE},
    {"Vendor", LIBVX_SYS_TEXT_SIZE},      {"VendorId", LIBVX_SYS_TEXT_SIZE},
    {"EquipmentId", LIBVX_SYS_TEXT_SIZE}, {"FitId", LIBVX_SYS_FIT_ID_SIZE},
    {"HwVersion", LIBVX_SYS_TEXT_SIZE},   {"UserName", LIBVX_SYS_TEXT_SIZE},
    {"UserPasswd", LIBVX_SYS_TEXT_SIZE},  {"Area", LIBVX_SYS_TEXT_SIZE},
    {"Province", LIBVX_SYS_TEXT_SIZE},    {"GPON_SN", LIBVX_SYS_SERIAL_SIZE},
    {"GPON_Passwd", LIBVX_SYS_TEXT_SIZE}, {"LOID", LIBVX_SYS_TEXT_SIZE},
    {"LOID_Passwd", LIBVX_SYS_TEXT_SIZE}, {"WifiSsid", LIBVX_SYS_TEXT_SIZE},
    {"WifiPasswd", LIBVX_SYS_TEXT_SIZE},  {"PhyPortMap", LIBVX_SYS_TEXT_SIZE},
    {"PDate", LIBVX_SYS_TEXT_SIZE},
};
static_assert(std::ranges::all_of(key_rows, [](const key_row &row) { return row.size <= sysinfo_value_max; }));

size_t sysinfo_value_size(const char *key) {
    const auto *row =
        std::ranges::find_if(key_rows, [key](const auto &each) { return strcmp(each.key, key) == 0; });
    return row != std::end(key_rows) ? row->size : LIBVX_SYS_SHORT_SIZE;
}

static bool is_blank(char c) {
    return c == ' ' || c == '\t';
}

static bool has_control(const char *text) {
    return std::any_of(text, text + strlen(text), [](unsigned char c) { return c < ' ' || c == 0x7F; });
}

// A key that a line can have.
static bool is_key(const char *key) {
    const size_t length = strlen(key);
    return length > 0 && length <= key_max && !has_control(key) && strchr(key, '=') == nullptr && key[0] != '#' &&
           !is_blank(key[0]) && !is_blank(key[length - 1]);
}

// ---- lines ----

struct info_line {
    std::span<const char> whole; // with its newline, if it has one
    std::span<const char> value; // empty if it is not the line of the key
    bool matches;                // it is the line of the key
};

static size_t skip_blanks(std::span<const char> line, size_t at) {
    while (at < line.size() && is_blank(line[at])) {
        at++;
    }
    return at;
}

// Takes the first line off `text`, which is not empty.
static info_line take_line(std::span<const char> *text, const char *key) {
    const void *newline = memchr(text->data(), '\n', text->size());
    const size_t end =
        newline != nullptr ? static_cast<size_t>(static_cast<const char *>(newline) - text->data()) : text->size();
    const std::span<const char> whole = text->first(newline != nullptr ? end + 1 : end);
    *text = text->subspan(whole.size());

    std::span<const char> line = whole.first(end > 0 && whole[end - 1] == '\r' ? end - 1 : end);
    const size_t key_length = strlen(key);
    size_t at = skip_blanks(line, 0);
    if (line.size() - at < key_length || memcmp(line.data() + at, key, key_length) != 0) {
        return {whole, {}, false};
    }
    const size_t key_end = at + key_length;
    at = skip_blanks(line, key_end);
    if (at == line.size() || line[at] != '=') {
        return {whole, {}, false};
    }
    const size_t value = at > key_end ? skip_blanks(line, at + 1) : at + 1;
    return {whole, line.subspan(value), true};
}

// ---- the file ----

struct info_text {
    char text[info_size + 1]; // one more than a file may have
    size_t length;

    std::span<const char> contents() const { return {text, length}; }

    // Appends; what does not fit makes the text too long for a file.
    void add(std::span<const char> more) {
        const size_t count = std::min(more.size(), sizeof text - length);
        std::copy_n(more.begin(), count, text + length);
        length += count;
    }
};

static std::span<const uint8_t> bytes_of(const info_text &info) {
    return {reinterpret_cast<const uint8_t *>(info.text), info.length};
}

// LIBVX_RET_OK and an empty text if there is no file; of a file that is too large, all that there is room for.
static int32_t read_file(int dir, info_text *info) {
    info->length = 0;
    const board_fd file(openat(dir, info_name, O_RDONLY | O_CLOEXEC));
    if (file.fd < 0) {
        return errno == ENOENT ? LIBVX_RET_OK : LIBVX_RET_FILE_OPEN_FAIL;
    }
    const ptrdiff_t got = file_read(file.fd, {reinterpret_cast<uint8_t *>(info->text), sizeof info->text});
    if (got < 0) {
        return LIBVX_RET_FILE_READ_FAIL;
    }
    info->length = static_cast<size_t>(got);
    const auto erased = [](uint8_t byte) { return byte == 0x00 || byte == 0xFF; };
    if (std::ranges::all_of(bytes_of(*info), erased)) {
        info->length = 0;
    }
    return LIBVX_RET_OK;
}

static int open_dir() {
    return open(info_dir, O_RDONLY | O_DIRECTORY | O_CLOEXEC);
}

// ---- operations ----

int32_t sysinfo_get(const char *key, std::span<char> value) {
    if (key == nullptr || value.empty()) {
        return LIBVX_RET_INVALID_PARAMETER;
    }
    const board_fd dir(open_dir());
    info_text info;
    const int32_t result = read_file(dir.fd, &info);
    if (result != LIBVX_RET_OK) {
        return result;
    }
    info_line line = {};
    for (std::span<const char> rest = info.contents(); !rest.empty() && !line.matches;) {
        line = take_line(&rest, key);
    }
    const std::span<const char> fitting = line.value.first(std::min(line.value.size(), value.size() - 1));
    *std::ranges::copy(fitting, value.begin()).out = '\0';
    return LIBVX_RET_OK;
}

static void add_field(info_text *info, const char *key, const char *value) {
    info->add({key, strlen(key)});
    info->add({"=", 1});
    info->add({value, strlen(value)});
    info->add({"\n", 1});
}

// `before` with the field changed. Further lines of the same key are left out: they never counted.
static void change_field(const info_text &before, const char *key, const char *value, info_text *after) {
    bool open = *value != '\0'; // the value has still to find its place
    after->length = 0;
    for (std::span<const char> rest = before.contents(); !rest.empty();) {
        const info_line line = take_line(&rest, key);
        if (!line.matches) {
            after->add(line.whole);
        } else if (open) {
            add_field(after, key, value);
            open = false;
        }
    }
    if (open) {
        if (after->length > 0 && after->text[after->length - 1] != '\n') {
            after->add({"\n", 1});
        }
        add_field(after, key, value);
    }
}

int32_t sysinfo_set(const char *key, const char *value) {
    if (key == nullptr || value == nullptr || !is_key(key) || strlen(value) >= sysinfo_value_size(key) ||
        has_control(value)) {
        return LIBVX_RET_INVALID_PARAMETER;
    }
    const board_fd dir(dir_lock(AT_FDCWD, info_dir));
    info_text before;
    const int32_t result = read_file(dir.fd, &before);
    if (result != LIBVX_RET_OK) {
        return result;
    }
    if (before.length > info_size) {
        return LIBVX_RET_FAIL; // what does not fit the store would be lost
    }
    info_text after;
    change_field(before, key, value, &after);
    if (after.length > info_size) {
        return LIBVX_RET_FAIL;
    }
    if (std::ranges::equal(before.contents(), after.contents())) {
        return LIBVX_RET_OK;
    }
    return file_replace(dir.fd, info_name, bytes_of(after), true) ? LIBVX_RET_OK : LIBVX_RET_FILE_WRITE_FAIL;
}

int32_t sysinfo_load(int board) {
    const board_fd dir(dir_lock(AT_FDCWD, info_dir));
    uint8_t stored[info_size];
    size_t length = 0;
    const int32_t result = flash_store_read(board, sysinfo_flash, stored, &length);
    if (result == LIBVX_RET_FAIL) {
        length = flash_block;
        memset(stored, 0xFF, length);
    } else if (result != LIBVX_RET_OK) {
        return result;
    }
    return file_replace(dir.fd, info_name, {stored, length}, true) ? LIBVX_RET_OK : LIBVX_RET_FILE_WRITE_FAIL;
}

int32_t sysinfo_save(int board) {
    const board_fd dir(dir_lock(AT_FDCWD, info_dir)); // so that no later change is overtaken by an earlier one
    const board_fd file(openat(dir.fd, info_name, O_RDONLY | O_CLOEXEC));
    if (file.fd < 0) {
        return LIBVX_RET_FILE_OPEN_FAIL;
    }
    uint8_t stored[info_size + 1];
    const ptrdiff_t length = file_read(file.fd, stored);
    if (length < 0) {
        return LIBVX_RET_FILE_READ_FAIL;
    }
    return flash_store_write(board, sysinfo_flash, {stored, static_cast<size_t>(length)});
}

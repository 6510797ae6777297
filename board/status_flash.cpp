#include "status_flash.h"

#include "status_row.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>

static constexpr size_t block = 4096; // of flash

// ---- the unit ----

// What a store in flash holds: a header of magic, length and checksum in front of it. -1 if there is none whole.
static ptrdiff_t find_store(std::span<const char> flash, std::string_view magic, size_t *start) {
    for (const size_t bank : {size_t{0}, flash.size() / 2}) {
        uint32_t length = 0;
        if (flash.size() - bank >= 12 && std::string_view(flash.data() + bank, 4) == magic) {
            memcpy(&length, flash.data() + bank + 4,
                   sizeof length); // little-endian, as all machines that build this
            if (length <= flash.size() - bank - 12) {
                *start = bank + 12;
                return static_cast<ptrdiff_t>(length);
            }
        }
    }
    return -1;
}

static char file_bytes[1 << 20]; // the largest partition is an eighth of it

// The fields as they are in use; before they have been loaded, as they are in flash.
static std::string_view read_fields(int board, const char **from) {
    ptrdiff_t size = read_bytes(board, "unit/etc/vx_sys_info", file_bytes);
    *from = "";
    if (size >= 0) {
        return {file_bytes, static_cast<size_t>(size)};
    }
    size_t start = 0;
    size = read_bytes(board, "flash/sysinfo", file_bytes);
    size = size < 0 ? -1 : find_store({file_bytes, static_cast<size_t>(size)}, "SYS1", &start);
    if (size < 0) {
        return {};
    }
    *from = " (in flash, not loaded)";
    return {file_bytes + start, static_cast<size_t>(size)};
}

void show_unit(int board) {
    static constexpr const char *fields[][2] = {
        {"ModelName", ""}, {"TYPE", ""}, {"SN", "serial "}, {"GPON_SN", "GPON "}, {"MAC", "MAC "}};
    const char *from = "";
    const std::string_view text = read_fields(board, &from);
    status_row row = begin_row("unit");
    for (const auto &[key, label] : fields) {
        const std::string_view value = find_field(text, key);
        add_item(&row, "%s%.*s%s", label, value.data() == nullptr ? 1 : static_cast<int>(value.size()),
                 value.data() == nullptr ? "?" : value.data(), key[0] == 'M' && key[1] == 'A' ? from : "");
    }
    end_row(&row);
    row = begin_row("firmware");
    add_item(&row, "%s", read_attribute(board, "sys/fw_version").text);
    add_item(&row, "boot %s", read_attribute(board, "sys/boot_version").text);
    add_item(&row, "runs from %s", read_attribute(board, "sys/main_image").text);
    end_row(&row);
}

// ---- flash ----

struct partition_row {
    const char *name;
    const char *magic; // of the store in it; null: there is none
};

static constexpr partition_row partitions[] = {
    {"bob", "BOB1"},       {"sysinfo", "SYS1"}, {"backup", "BAK1"},  {"preconf", "PRE1"},
    {"hwconfig", nullptr}, {"image0", nullptr}, {"image1", nullptr},
};

static void add_partition(status_row *row, const partition_row &partition, std::span<const char> flash) {
    const auto is_erased = [](std::span<const char> bytes) {
        return std::ranges::all_of(bytes, [](char c) { return c == '\xFF'; });
    };
    size_t used = 0;
    for (size_t at = 0; at < flash.size(); at += block) {
        used += is_erased(flash.subspan(at, std::min(block, flash.size() - at))) ? 0 : 1;
    }
    size_t start = 0;
    const ptrdiff_t held = partition.magic == nullptr ? -1 : find_store(flash, partition.magic, &start);
    const size_t kib = flash.size() / 1024;
    if (flash.empty() || flash.size() % block != 0 || flash.size() == sizeof file_bytes) {
        add_item(row, "%s damaged", partition.name);
    } else if (used == 0) {
        add_item(row, "%s %zu KiB erased", partition.name, kib);
    } else if (held >= 0) {
        add_item(row, "%s %zu KiB holds %td bytes", partition.name, kib, held);
    } else {
        add_item(row, "%s %zu KiB%s %zu of %zu blocks used", partition.name, kib,
                 partition.magic == nullptr ? "" : " damaged,", used, flash.size() / block);
    }
}

void show_flash(int board) {
    status_row row = begin_row("flash");
    for (const partition_row &partition : partitions) {
        char path[32];
        char target[48];
        snprintf(path, sizeof path, "flash/%s", partition.name);
        struct stat status = {};
        if (read_link(board, path, target)) {
            add_item(&row, "%s real hardware: %s", partition.name, target);
        } else if (fstatat(board, path, &status, AT_SYMLINK_NOFOLLOW) != 0 && errno == ENOENT) {
            add_item(&row, "%s ?", partition.name);
        } else {
            const ptrdiff_t size = read_bytes(board, path, file_bytes);
            add_partition(&row, partition, {file_bytes, size < 0 ? 0 : static_cast<size_t>(size)});
        }
    }
    end_row(&row);
}

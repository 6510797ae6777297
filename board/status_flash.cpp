#include "status_flash.h"

#include "flash_format.h"
#include "status_row.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>

static constexpr size_t block = 4096; // of flash

// ---- the unit ----

static char file_bytes[1 << 20]; // the largest partition is an eighth of it

// The fields as they are in use; before they have been loaded, as they are in flash.
static std::string_view read_fields(int board, const char **from) {
    ptrdiff_t size = read_bytes(board, "unit/etc/vx_sys_info", file_bytes);
    *from = "";
    if (size >= 0) {
        return {file_bytes, static_cast<size_t>(size)};
    }
    size = read_bytes(board, "flash/sysinfo", file_bytes);
    const auto fields = flash_contents({file_bytes, size < 0 ? 0 : static_cast<size_t>(size)}, flash_sysinfo);
    if (!fields) {
        return {};
    }
    *from = " (in flash, not loaded)";
    return *fields;
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
    uint32_t magic = 0; // of what is kept in it; 0: it has no header
};

static constexpr partition_row partitions[] = {
    {"bob", flash_bob},
    {"sysinfo", flash_sysinfo},
    {"backup", flash_backup},
    {"preconf", flash_preconf},
    {"hwconfig"},
    {"image0"},
    {"image1"},
};

static void add_partition(status_row *row, const partition_row &partition, std::string_view flash) {
    const auto is_erased = [](std::string_view bytes) {
        return std::ranges::all_of(bytes, [](char c) { return c == '\xFF'; });
    };
    size_t used = 0;
    for (size_t at = 0; at < flash.size(); at += block) {
        used += is_erased({flash.data() + at, std::min(block, flash.size() - at)}) ? 0 : 1;
    }
    const auto held = partition.magic != 0 ? flash_contents(flash, partition.magic) : std::nullopt;
    const size_t kib = flash.size() / 1024;
    if (flash.empty() || flash.size() % block != 0 || flash.size() == sizeof file_bytes) {
        add_item(row, "%s damaged", partition.name);
    } else if (used == 0) {
        add_item(row, "%s %zu KiB erased", partition.name, kib);
    } else if (held) {
        add_item(row, "%s %zu KiB holds %zu bytes", partition.name, kib, held->size());
    } else {
        add_item(row, "%s %zu KiB%s %zu of %zu blocks used", partition.name, kib,
                 partition.magic == 0 ? "" : " damaged,", used, flash.size() / block);
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

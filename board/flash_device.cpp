#include "flash_device.h"

#include "board_trace.h"

#include <algorithm>
#include <cerrno>
#include <mtd/mtd-user.h>
#include <sys/ioctl.h>

bool flash_device_failed(const flash_partition &partition, node_state state, const char *action, uint32_t offset,
                         size_t length) {
    trace_line(partition.board, board_now(), "flash %s %s %s 0x%x %zu", partition.name, node_word(state), action,
               offset, length);
    return false;
}

static bool failed(const flash_partition &partition, const char *action, uint32_t offset, size_t length) {
    return flash_device_failed(partition, node_failure(errno), action, offset, length);
}

// Sizes that the functions below can work with.
static bool is_usable(const mtd_info_user &info) {
    return info.erasesize >= 256 && info.size >= info.erasesize && info.size <= INT32_MAX &&
           info.size % info.erasesize == 0 && info.writesize > 0 && info.writesize <= flash_page_max &&
           info.erasesize % info.writesize == 0;
}

void flash_device_open(flash_partition *partition) {
    node_state state = node_state::ok;
    partition->file.fd = node_open(partition->lock.fd, partition->name, node_mtd, &state);
    if (partition->file.fd < 0) {
        flash_device_failed(*partition, state, "open", 0, 0);
        return;
    }
    mtd_info_user info = {};
    if (ioctl(partition->file.fd, MEMGETINFO, &info) != 0) {
        failed(*partition, "info", 0, 0);
        return;
    }
    if (!is_usable(info)) {
        flash_device_failed(*partition, node_state::refused, "info", 0, info.size);
        return;
    }
    partition->size = info.size;
    partition->block = info.erasesize;
    partition->page = info.writesize;
}

// Whether no block that holds part of the range is marked bad. Flash that has no such marks does not know the
// request.
static bool blocks_are_good(const flash_partition &partition, uint32_t offset, size_t length) {
    for (uint32_t block = offset - offset % partition.block; block < offset + length; block += partition.block) {
        loff_t place = block;
        const int bad = ioctl(partition.file.fd, MEMGETBADBLOCK, &place);
        if (bad > 0) {
            return flash_device_failed(partition, node_state::refused, "badblock", block, partition.block);
        }
        if (bad < 0 && errno != EOPNOTSUPP) {
            return failed(partition, "badblock", block, partition.block);
        }
    }
    return true;
}

static bool read_cells(const flash_partition &partition, uint32_t offset, std::span<uint8_t> data) {
    return file_read_at(partition.file.fd, offset, data) || failed(partition, "read", offset, data.size());
}

bool flash_device_read(const flash_partition &partition, uint32_t offset, std::span<uint8_t> data) {
    return blocks_are_good(partition, offset, data.size()) && read_cells(partition, offset, data);
}

bool flash_device_erase_block(const flash_partition &partition, uint32_t block) {
    erase_info_user range = {.start = block, .length = partition.block};
    return blocks_are_good(partition, block, partition.block) &&
           (ioctl(partition.file.fd, MEMERASE, &range) == 0 || failed(partition, "erase", block, partition.block));
}

// Programs whole pages, at most flash_page_max bytes of them, if the cells are erased.
static bool program_pages(const flash_partition &partition, uint32_t offset, std::span<const uint8_t> fresh) {
    uint8_t cells[flash_page_max];
    if (!read_cells(partition, offset, {cells, fresh.size()})) {
        return false;
    }
    if (std::any_of(cells, cells + fresh.size(), [](uint8_t cell) { return cell != 0xFF; })) {
        return flash_device_failed(partition, node_state::refused, "program", offset, fresh.size());
    }
    return file_write_at(partition.file.fd, offset, fresh) || failed(partition, "program", offset, fresh.size());
}

bool flash_device_program(const flash_partition &partition, uint32_t offset, std::span<const uint8_t> data) {
    if (!blocks_are_good(partition, offset, data.size())) {
        return false;
    }
    const uint32_t page = partition.page;
    const uint32_t at_once = flash_page_max - flash_page_max % page;
    bool ok = true;
    for (size_t done = 0; ok && done < data.size();) {
        const uint32_t place = offset + static_cast<uint32_t>(done);
        const size_t count = std::min(data.size() - done, size_t{at_once});
        const size_t whole = (count + page - 1) / page * page;
        uint8_t fresh[flash_page_max];
        std::fill_n(fresh, whole, uint8_t{0xFF}); // what is left of the last page stays erased
        std::ranges::copy(data.subspan(done, count), fresh);
        ok = program_pages(partition, place, {fresh, whole});
        done += count;
    }
    return ok;
}

#include "flash.h"

#include "flash_device.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>

static int open_file(int dir, const char *name) {
    return dir < 0 ? -1 : openat(dir, name, O_RDWR | O_NOFOLLOW | O_CLOEXEC);
}

flash_partition::flash_partition(int board_dir, const char *partition_name)
    : board(board_dir),
      name(partition_name),
      lock(dir_lock(board, "flash")),
      file(open_file(lock.fd, name)),
      real(lock.fd >= 0 && file.fd < 0 && errno == ELOOP),
      size(0),
      block(flash_block),
      page(1) {
    struct stat status = {};
    if (real) {
        flash_device_open(this);
    } else if (file.fd >= 0 && fstat(file.fd, &status) == 0 && status.st_size % flash_block == 0 &&
               status.st_size <= INT32_MAX) {
        size = static_cast<uint32_t>(status.st_size);
    }
}

static bool inside(const flash_partition &partition, uint32_t offset, size_t length) {
    return offset <= partition.size && length <= partition.size - offset;
}

bool flash_read(const flash_partition &partition, uint32_t offset, std::span<uint8_t> data) {
    if (!inside(partition, offset, data.size())) {
        return false;
    }
    return partition.real ? flash_device_read(partition, offset, data)
                          : file_read_at(partition.file.fd, offset, data);
}

static bool erase_block(const flash_partition &partition, uint32_t block) {
    if (partition.real) {
        return flash_device_erase_block(partition, block);
    }
    uint8_t erased[flash_block];
    memset(erased, 0xFF, sizeof erased);
    return file_write_at(partition.file.fd, block, erased);
}

bool flash_erase(const flash_partition &partition, uint32_t offset, uint32_t length) {
    if (!inside(partition, offset, length)) {
        return false;
    }
    bool ok = true;
    for (uint32_t block = offset - offset % partition.block; ok && block < offset + length;
         block += partition.block) {
        ok = erase_block(partition, block);
    }
    return ok;
}

bool flash_program(const flash_partition &partition, uint32_t offset, std::span<const uint8_t> data) {
    if (!inside(partition, offset, data.size())) {
        return false;
    }
    if (partition.real) {
        return flash_device_program(partition, offset, data);
    }
    uint8_t cells[flash_block];
    for (size_t done = 0; done < data.size();) {
        std::span<uint8_t> piece(cells, std::min(data.size() - done, sizeof cells));
        uint32_t place = offset + static_cast<uint32_t>(done);
        if (!file_read_at(partition.file.fd, place, piece)) {
            return false;
        }
        for (uint8_t &cell : piece) {
            cell &= data[done++];
        }
        if (!file_write_at(partition.file.fd, place, piece)) {
            return false;
        }
    }
    return true;
}

void flash_too_small(const flash_partition &partition, uint32_t needed) {
    if (partition.real) {
        flash_device_failed(partition, node_state::refused, "size", 0, needed);
    }
}

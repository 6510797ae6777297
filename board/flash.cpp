#include "flash.h"

#include <algorithm>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>

// A partition is a file. One that leads to a flash device node would be told apart here.
static int open_file(int dir, const char *name) {
    return dir < 0 ? -1 : openat(dir, name, O_RDWR | O_CLOEXEC);
}

flash_partition::flash_partition(int board, const char *name)
    : lock(dir_lock(board, "flash")), file(open_file(lock.fd, name)), size(0) {
    struct stat status = {};
    if (file.fd >= 0 && fstat(file.fd, &status) == 0 && status.st_size % flash_block == 0 &&
        status.st_size <= INT32_MAX) {
        size = static_cast<uint32_t>(status.st_size);
    }
}

static bool inside(const flash_partition &partition, uint32_t offset, size_t length) {
    return offset <= partition.size && length <= partition.size - offset;
}

bool flash_read(const flash_partition &partition, uint32_t offset, std::span<uint8_t> data) {
    return inside(partition, offset, data.size()) && file_read_at(partition.file.fd, offset, data);
}

bool flash_erase(const flash_partition &partition, uint32_t offset, uint32_t length) {
    if (!inside(partition, offset, length)) {
        return false;
    }
    uint8_t erased[flash_block];
    memset(erased, 0xFF, sizeof erased);
    bool ok = true;
    for (uint32_t block = offset - offset % flash_block; ok && block < offset + length; block += flash_block) {
        ok = file_write_at(partition.file.fd, block, erased);
    }
    return ok;
}

bool flash_program(const flash_partition &partition, uint32_t offset, std::span<const uint8_t> data) {
    if (!inside(partition, offset, data.size())) {
        return false;
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

// Wi-Fi calibration: ranges of a flash partition copied to files and back.

#include "board_call.h"
#include "flash.h"

#include "libvx.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>

// A partition's name, not a way out of the flash.
static bool is_name(const char *text) {
    return text != nullptr && strchr(text, '/') == nullptr;
}

static bool lies_inside(const flash_partition &partition, uint32_t offset, uint32_t size) {
    return offset <= partition.size && size <= partition.size - offset;
}

static int32_t get_range(int board, const char *name, uint32_t offset, uint32_t size, const char *path) {
    const flash_partition partition(board, name);
    if (partition.size == 0) {
        return LIBVX_RET_FILE_OPEN_FAIL;
    }
    if (!lies_inside(partition, offset, size)) {
        return LIBVX_RET_INVALID_PARAMETER;
    }
    const board_fd file(open(path, O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644));
    if (file.fd < 0) {
        return LIBVX_RET_FILE_OPEN_FAIL;
    }
    for (uint32_t done = 0; done < size;) {
        uint8_t cells[flash_block];
        const std::span<uint8_t> piece(cells, std::min(size - done, flash_block));
        if (!flash_read(partition, offset + done, piece)) {
            return LIBVX_RET_FILE_READ_FAIL;
        }
        if (!file_write(file.fd, piece)) {
            return LIBVX_RET_FILE_WRITE_FAIL;
        }
        done += static_cast<uint32_t>(piece.size());
    }
    return LIBVX_RET_OK;
}

// Puts what comes next in the file into `length` bytes of one block, keeping the block's other bytes; `cells` has
// room for all of them. The file is read before the block is erased, so that an unreadable one changes nothing.
// Their first byte comes last, unless there are pages to be programmed in order: what is cut short begins as erased
// flash does.
static int32_t save_in_block(const flash_partition &partition, uint32_t place, uint32_t length, int file,
                             std::span<uint8_t> cells) {
    const uint32_t block = place - place % partition.block;
    if (!flash_read(partition, block, cells)) {
        return LIBVX_RET_FILE_READ_FAIL;
    }
    const std::span<uint8_t> piece = cells.subspan(place - block, length);
    std::ranges::fill(piece, uint8_t{0xFF}); // where the file is short
    if (file_read(file, piece) < 0) {
        return LIBVX_RET_FILE_READ_FAIL;
    }
    const std::span<uint8_t> last = piece.first(partition.page == 1 ? 1 : 0);
    const uint8_t first = piece[0];
    std::ranges::fill(last, uint8_t{0xFF});
    bool ok = flash_erase(partition, block, partition.block) && flash_program(partition, block, cells);
    std::ranges::fill(last, first);
    ok = ok && flash_program(partition, place, last);
    return ok ? LIBVX_RET_OK : LIBVX_RET_FILE_WRITE_FAIL;
}

// One block after the other. A power loss costs at most what is in the one block that is being written: of the
// calibration slots, which share no blocks of a file, only the one that is saved.
static int32_t save_range(int board, const char *name, uint32_t offset, uint32_t size, const char *path) {
    const board_fd file(open(path, O_RDONLY | O_CLOEXEC));
    if (file.fd < 0) {
        return LIBVX_RET_FILE_OPEN_FAIL;
    }
    const flash_partition partition(board, name);
    if (partition.size == 0) {
        return LIBVX_RET_FILE_OPEN_FAIL;
    }
    if (!lies_inside(partition, offset, size)) {
        return LIBVX_RET_INVALID_PARAMETER;
    }
    uint8_t *cells = static_cast<uint8_t *>(malloc(partition.block));
    int32_t result = cells != nullptr ? LIBVX_RET_OK : LIBVX_RET_FAIL;
    for (uint32_t done = 0; result == LIBVX_RET_OK && done < size;) {
        const uint32_t place = offset + done;
        const uint32_t length = std::min(size - done, partition.block - place % partition.block);
        result = save_in_block(partition, place, length, file.fd, {cells, partition.block});
        done += length;
    }
    free(cells);
    return result;
}

int32_t libvx_sys_get_wlan_caldata(const char *partition, uint32_t offset, uint32_t size, const char *path) {
    return board_call(__func__, [=](int board) {
        return is_name(partition) && path != nullptr ? get_range(board, partition, offset, size, path)
                                                     : int32_t{LIBVX_RET_INVALID_PARAMETER};
    });
}

int32_t libvx_sys_save_wlan_caldata(const char *partition, uint32_t offset, uint32_t size, const char *path) {
    return board_call(__func__, [=](int board) {
        return is_name(partition) && path != nullptr ? save_range(board, partition, offset, size, path)
                                                     : int32_t{LIBVX_RET_INVALID_PARAMETER};
    });
}

// A run of bytes kept in a flash partition, as flash_format.h tells.
#ifndef FLASH_STORE_H
#define FLASH_STORE_H

#include "flash_format.h"

#include <cstddef>
#include <cstdint>
#include <span>

struct flash_store {
    const char *partition;
    uint32_t magic;
};

// Each takes the lock of the flash and returns a libvx_retCode_t.

// Reads the contents into `room` and their size into `length`. LIBVX_RET_FAIL if there are none, or none that are
// whole and fit; LIBVX_RET_FILE_READ_FAIL if the partition cannot be read. Both are then undefined.
int32_t flash_store_read(int board, const flash_store &store, std::span<uint8_t> room, size_t *length);

// Keeps `data` instead of what was there. LIBVX_RET_FAIL, and nothing changed, if they do not fit a bank.
int32_t flash_store_write(int board, const flash_store &store, std::span<const uint8_t> data);

// Erases the whole partition.
int32_t flash_store_erase(int board, const flash_store &store);

#endif

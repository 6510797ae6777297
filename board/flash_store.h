// A run of bytes kept in a flash partition: behind a header that says whether it is whole.
#ifndef FLASH_STORE_H
#define FLASH_STORE_H

#include <cstddef>
#include <cstdint>
#include <span>

struct flash_store {
    const char *partition;
    uint32_t magic;
};

inline constexpr uint32_t flash_store_banks = 2;   // a store that is cut short leaves the old contents
inline constexpr uint32_t flash_store_header = 12; // bytes in front of the contents

// Each takes the lock of the flash and returns a libvx_retCode_t.

// Reads the contents into `room` and their size into `length`. LIBVX_RET_FAIL if there are none, or none that are
// whole and fit; LIBVX_RET_FILE_READ_FAIL if the partition cannot be read. Both are then undefined.
int32_t flash_store_read(int board, const flash_store &store, std::span<uint8_t> room, size_t *length);

// Keeps `data` instead of what was there. LIBVX_RET_FAIL, and nothing changed, if they do not fit a bank.
int32_t flash_store_write(int board, const flash_store &store, std::span<const uint8_t> data);

// Erases the whole partition.
int32_t flash_store_erase(int board, const flash_store &store);

#endif

// Flash partitions, one file each under BOARD/flash, that behave like flash: an erase sets whole blocks to 0xFF,
// programming only clears bits.
#ifndef FLASH_H
#define FLASH_H

#include "board_dir.h"

#include <cstdint>
#include <span>

inline constexpr uint32_t flash_block = 4096; // bytes that one erase takes at least

// An open partition. It holds the lock of the flash while it lives.
struct flash_partition {
    board_fd lock;
    board_fd file;
    uint32_t size; // in bytes, whole blocks; 0 if the partition could not be opened

    flash_partition(int board, const char *name);
};

// Each is false if the range does not lie inside the partition or the file could not be read or written.
bool flash_read(const flash_partition &partition, uint32_t offset, std::span<uint8_t> data);

// Erases the blocks that hold the range, each of them whole.
bool flash_erase(const flash_partition &partition, uint32_t offset, uint32_t length);

// Leaves in each byte the bits that were set there and are set in `data`: what is not erased before comes out
// mixed.
bool flash_program(const flash_partition &partition, uint32_t offset, std::span<const uint8_t> data);

#endif

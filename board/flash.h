// Flash partitions, one file each under BOARD/flash, that behave like flash: an erase sets whole blocks to 0xFF,
// programming only clears bits. A link in the place of the file leads to real flash (flash_device.h).
#ifndef FLASH_H
#define FLASH_H

#include "board_dir.h"

#include <cstdint>
#include <span>

inline constexpr uint32_t flash_block = 4096;     // bytes that one erase takes in a file
inline constexpr uint32_t flash_page_max = 16384; // of any flash

// An open partition. It holds the lock of the flash while it lives.
struct flash_partition {
    int board;        // the caller's
    const char *name; // the caller's
    board_fd lock;
    board_fd file;
    bool real;
    uint32_t size;  // in bytes, whole blocks; 0 if the partition could not be opened
    uint32_t block; // bytes that one erase takes
    uint32_t page;  // programmed as a whole, at most once between two erases; 1: there are no pages

    flash_partition(int board_dir, const char *partition_name);
};

// Each is false if the range does not lie inside the partition or the flash could not be read or written.
bool flash_read(const flash_partition &partition, uint32_t offset, std::span<uint8_t> data);

// Erases the blocks that hold the range, each of them whole.
bool flash_erase(const flash_partition &partition, uint32_t offset, uint32_t length);

// Leaves in each byte the bits that were set there and are set in `data`: what is not erased before comes out
// mixed. Real flash is programmed only where it is erased, in pages from their beginning on: elsewhere it fails.
bool flash_program(const flash_partition &partition, uint32_t offset, std::span<const uint8_t> data);

// Notes in the trace that a real partition would have to have `needed` bytes.
void flash_too_small(const flash_partition &partition, uint32_t needed);

#endif

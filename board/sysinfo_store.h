// The store of manufacturing fields: lines KEY=value in /etc/vx_sys_info, kept for good in the flash partition
// `sysinfo`.
//
// The file may have been edited by hand. A field's line is the first one with its key; blanks before the key and
// around the sign do not count, a missing last newline neither. Blanks behind the sign do count if none are before
// it: that is how the store writes a value with blanks of its own. All other lines, whatever is in them, stay as
// they are when a field is changed. A file of nothing but 0x00 and 0xFF, as erased flash is, counts as empty.
#ifndef SYSINFO_STORE_H
#define SYSINFO_STORE_H

#include "flash_store.h"

#include <cstdint>
#include <span>

inline constexpr flash_store sysinfo_flash = {.partition = "sysinfo", .magic = flash_sysinfo};
inline constexpr uint32_t sysinfo_partition_size = 65536;

// All but the last two return a libvx_retCode_t. Changes are made one after the other, under a lock, each in a
// single step: a process that is killed leaves the old or the new store.

// Copies the text under `key` into `value`, cut to its size, with its NUL; the empty text if there is none. A
// failure leaves `value` as it was.
int32_t sysinfo_get(const char *key, std::span<char> value);

// Puts `value` in the place of what is under `key`; the empty text takes the line out. Values that are longer than
// the key allows or have control characters in them are refused, as is a store that would grow too large.
int32_t sysinfo_set(const char *key, const char *value);

// Brings the file back from flash; without a valid store there, the file comes out as erased flash does.
int32_t sysinfo_load(int board);

// Writes the file to flash.
int32_t sysinfo_save(int board);

// The size of the buffer that the values under `key` have to fit, with their NUL.
size_t sysinfo_value_size(const char *key);

// The largest of them.
inline constexpr size_t sysinfo_value_max = 65;

#endif

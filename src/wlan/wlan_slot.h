// The slots of the flash partition that keeps the Wi-Fi chips' calibration, and the files that go with them.
#ifndef VXCLI_WLAN_SLOT_H
#define VXCLI_WLAN_SLOT_H

#include <cstddef>
#include <cstdint>
#include <span>

inline constexpr char mtd_partition_name[] = "hwconfig";

struct chip_cal_info {
    const char *chip_name;
    const char *cur_path;  // the file that the Wi-Fi driver loads
    uint32_t offset;       // of the slot in the partition, in bytes
    uint32_t bin_size;     // of the slot, in bytes
    const char *temp_path; // scratch file, for the slot as it was read back
};

// The slot of the calibration header, which is also the last row of the table.
inline constexpr chip_cal_info cali_header_slot = {"header", "/tmp/cali_header.bin", 0x7000, 0x100,
                                                   "/tmp/cali_header.bin"};

// No slot is larger than a flash block, and no file is read further than this.
inline constexpr size_t WLAN_SLOT_MAX = 4096;

// All slots, in the order in which they are shown and searched.
std::span<const chip_cal_info> cal_bin_path_tab();

// The slot of that name, or null.
const chip_cal_info *find_slot(const char *chip_name);

// Fills `buffer` with what the file begins with and zeros behind it. A file that cannot be read is all zeros.
void read_cal_file(const char *path, std::span<uint8_t> buffer);

// The sum of all bytes, modulo 2^32: the only checksum in use here.
uint32_t byte_sum(std::span<const uint8_t> bytes);

// The sum of the first `bin_size` bytes of a file, or of as many as there are; 0 when it cannot be read.
uint32_t get_bin_check_sum(const char *bin_path, int32_t bin_size);

#endif

// The calibration header: a slot of its own that says for up to three chips where their data is and what it sums
// up to. All numbers are little-endian, whatever the host is.
#ifndef VXCLI_WLAN_HEADER_H
#define VXCLI_WLAN_HEADER_H

#include <cstddef>
#include <cstdint>

struct vx_cali_u32 {
    uint8_t byte[4]; // least significant first
};

uint32_t get_cali_u32(const vx_cali_u32 &field);

// In flash: a vx_cali_header_magic, then the entry table.
struct vx_cali_header_magic {
    char magic_str[16];       // NUL-padded
    vx_cali_u32 ver;          // of the format
    vx_cali_u32 headerlen;    // of the entry table, in bytes
    vx_cali_u32 headerchksum; // the sum of its bytes
};

struct vx_cali_header {
    char chipname[8];     // NUL-padded; empty: the entry is free
    vx_cali_u32 offset;   // of the chip's slot in the partition
    vx_cali_u32 bin_size; // of the chip's data
    vx_cali_u32 checksum; // the sum of the data's bytes
};

static_assert(sizeof(vx_cali_header_magic) == 28 && offsetof(vx_cali_header_magic, ver) == 16 &&
              offsetof(vx_cali_header_magic, headerlen) == 20 &&
              offsetof(vx_cali_header_magic, headerchksum) == 24);
static_assert(sizeof(vx_cali_header) == 20 && offsetof(vx_cali_header, offset) == 8 &&
              offsetof(vx_cali_header, bin_size) == 12 && offsetof(vx_cali_header, checksum) == 16);

// Loads the entry table from flash and finds the chip's entry in it: null after a message when the header is
// damaged or has none. An erased header is an empty one. The entry is valid until the next load or renewal.
const vx_cali_header *load_cali_data_header(const char *chipname);

// Gives the chip an entry that describes the slot as it is in flash now, and writes the header. Prints what came
// of it. The other entries are those of the last header that this process loaded: without a load there are none.
void renew_cali_info_header(const char *chipname, uint32_t offset, uint32_t bin_size);

#endif

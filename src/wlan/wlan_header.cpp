#include "wlan/wlan_header.h"

#include "libvx.h"
#include "wlan/wlan_slot.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <span>

static constexpr char CALI_MAGIC[] = "VXCaliInfo";
static constexpr uint32_t CALI_VERSION = 0x01000000;
static constexpr size_t CALI_ENTRIES = 3;
static constexpr char RENEW_TEMP_FILE[] = "/tmp/tmp.bin";

// The entry table as in flash, kept from a load to a renewal.
static vx_cali_header cali_header[CALI_ENTRIES];
static_assert(sizeof cali_header == 60);

uint32_t get_cali_u32(const vx_cali_u32 &field) {
    uint32_t value = 0;
    for (size_t i = 0; i < sizeof field.byte; i++) {
        value |= static_cast<uint32_t>(field.byte[i]) << (8 * i);
    }
    return value;
}

static void put_cali_u32(vx_cali_u32 *field, uint32_t value) {
    for (uint8_t &byte : field->byte) {
        byte = static_cast<uint8_t>(value);
        value >>= 8;
    }
}

static std::span<const uint8_t> cali_header_bytes() {
    return {reinterpret_cast<const uint8_t *>(cali_header), sizeof cali_header};
}

// A name that takes up all of its field has no NUL behind it.
static bool is_entry_of(const vx_cali_header &entry, const char *chipname) {
    return strlen(chipname) <= sizeof entry.chipname &&
           strncmp(entry.chipname, chipname, sizeof entry.chipname) == 0;
}

// All of the name counts: one that only begins with a NUL is nobody's, and its entry is taken.
static bool is_free(const vx_cali_header &entry) {
    return std::ranges::all_of(entry.chipname, [](char each) { return each == '\0'; });
}

// Takes over the entry table of a header slot. False after a message when the header is damaged; one without the
// magic text, such as an erased one, leaves the table as it is.
static bool take_cali_header(std::span<const uint8_t, WLAN_SLOT_MAX> slot) {
    if (memcmp(slot.data(), CALI_MAGIC, sizeof CALI_MAGIC) != 0) {
        return true;
    }
    vx_cali_header_magic magic;
    memcpy(&magic, slot.data(), sizeof magic);
    if (get_cali_u32(magic.ver) != CALI_VERSION) {
        printf("unknown version! [0x%04X]\n", get_cali_u32(magic.ver));
        return false;
    }
    const uint32_t length = get_cali_u32(magic.headerlen);
    if (length > sizeof cali_header) {
        printf("invalied len ! [%d]\n", static_cast<int32_t>(length));
        return false;
    }
    const std::span<const uint8_t> table = slot.subspan(sizeof magic, length);
    const uint32_t sum = byte_sum(table);
    if (sum != get_cali_u32(magic.headerchksum)) {
        printf("headerself checksum mismatch! [0x%04X] [0x%04X]\n", get_cali_u32(magic.headerchksum), sum);
        return false;
    }
    memcpy(cali_header, table.data(), length);
    return true;
}

const vx_cali_header *load_cali_data_header(const char *chipname) {
    if (libvx_sys_get_wlan_caldata(mtd_partition_name, cali_header_slot.offset, cali_header_slot.bin_size,
                                   cali_header_slot.temp_path) != 0) {
        printf("load cali data faild!\n");
        return nullptr;
    }
    uint8_t slot[WLAN_SLOT_MAX];
    read_cal_file(cali_header_slot.temp_path, slot);
    if (!take_cali_header(slot)) {
        return nullptr;
    }
    for (const vx_cali_header &entry : cali_header) {
        if (is_entry_of(entry, chipname)) {
            return &entry;
        }
    }
    printf("no match chip [%s] header found!\n", chipname);
    return nullptr;
}

// Puts the chip into its entry or the first free one, and opens the header's file for writing. When that cannot be
// opened, the search goes on behind this entry, which stays filled. Null, after a message, when there is no entry
// left.
static FILE *fill_entry(const vx_cali_header &fresh, const char *chipname, const vx_cali_header **filled) {
    for (vx_cali_header &entry : cali_header) {
        if (!is_free(entry) && !is_entry_of(entry, chipname)) {
            continue;
        }
        entry = fresh;
        FILE *file = fopen(cali_header_slot.cur_path, "wb");
        if (file != nullptr) {
            *filled = &entry;
            return file;
        }
    }
    // The same text for both: what is missing is an entry, or a file that can be written.
    printf("no match chip [%s] found  or too many chips header!\n", chipname);
    return nullptr;
}

void renew_cali_info_header(const char *chipname, uint32_t offset, uint32_t bin_size) {
    if (libvx_sys_get_wlan_caldata(mtd_partition_name, offset, bin_size, RENEW_TEMP_FILE) != 0) {
        printf("load cali data faild!\n");
        return;
    }
    vx_cali_header fresh = {};
    std::copy_n(chipname, strnlen(chipname, sizeof fresh.chipname), fresh.chipname);
    put_cali_u32(&fresh.offset, offset);
    put_cali_u32(&fresh.bin_size, bin_size);
    put_cali_u32(&fresh.checksum, get_bin_check_sum(RENEW_TEMP_FILE, static_cast<int32_t>(bin_size)));
    const vx_cali_header *entry = nullptr;
    FILE *file = fill_entry(fresh, chipname, &entry);
    if (file == nullptr) {
        return;
    }
    vx_cali_header_magic magic = {};
    memcpy(magic.magic_str, CALI_MAGIC, sizeof CALI_MAGIC);
    put_cali_u32(&magic.ver, CALI_VERSION);
    put_cali_u32(&magic.headerlen, sizeof cali_header);
    put_cali_u32(&magic.headerchksum, byte_sum(cali_header_bytes()));
    fwrite(&magic, sizeof magic, 1, file);
    fwrite(cali_header, sizeof cali_header, 1, file);
    fclose(file);
    if (libvx_sys_save_wlan_caldata(mtd_partition_name, cali_header_slot.offset, cali_header_slot.bin_size,
                                    cali_header_slot.cur_path) != 0) {
        printf("renew_cali_info_header failed!\n");
        return;
    }
    printf("renew_cali_info_header ok! %.8s 0x%04X:0x%04X:0x%04X \n", entry->chipname, get_cali_u32(entry->offset),
           get_cali_u32(entry->bin_size), get_cali_u32(entry->checksum));
}

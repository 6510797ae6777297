#include "wlan/wlan_cal.h"

#include "common/shell.h"
#include "libvx.h"
#include "wlan/wlan_header.h"

#include <algorithm>
#include <cstdio>

static constexpr char EMPTY_FILE[] = "/tmp/emptyfile";

// Stores a file in the slot and renews the header, if that succeeds: 0, or the library's code.
static int32_t save_slot(const chip_cal_info &slot, const char *path) {
    const int32_t result = libvx_sys_save_wlan_caldata(mtd_partition_name, slot.offset, slot.bin_size, path);
    if (result == 0) {
        renew_cali_info_header(slot.chip_name, slot.offset, slot.bin_size);
    }
    return result;
}

int32_t clean_cal_data(const chip_cal_info &slot) {
    shell_run("dd if=/dev/zero of=%s bs=1k count=4", EMPTY_FILE);
    const int32_t result = save_slot(slot, EMPTY_FILE);
    printf("clean %s cal data %s!\n", slot.chip_name, result == 0 ? "ok" : "faild");
    return result;
}

int32_t write_cal_data(const chip_cal_info &slot) {
    const int32_t result = save_slot(slot, slot.cur_path);
    printf("write %s cal data to flash %s!\n", slot.chip_name, result == 0 ? "ok" : "faild");
    return result;
}

// The source is read before the target is opened: for some slots they are the same file.
static void copy_cal_file(const char *from, const char *to) {
    FILE *source = fopen(from, "rb");
    if (source == nullptr) {
        return;
    }
    uint8_t data[WLAN_SLOT_MAX];
    const size_t length = fread(data, 1, sizeof data, source);
    fclose(source);
    FILE *target = fopen(to, "wb");
    if (target == nullptr) {
        return;
    }
    fwrite(data, 1, length, target);
    fclose(target);
}

int32_t validate_cal_data(const chip_cal_info &slot) {
    const int32_t result =
        libvx_sys_get_wlan_caldata(mtd_partition_name, slot.offset, slot.bin_size, slot.temp_path);
    if (result != 0) {
        printf("get %s cal data from flash faild!\n", slot.chip_name);
        return result;
    }
    printf("get %s cal data from flash ok!\n", slot.chip_name);
    uint8_t data[WLAN_SLOT_MAX];
    read_cal_file(slot.temp_path, data);
    const vx_cali_header *entry = load_cali_data_header(slot.chip_name);
    if (entry != nullptr) {
        // The header is from outside: it may claim more than a slot can have.
        const size_t length = std::min(size_t{get_cali_u32(entry->bin_size)}, sizeof data);
        if (byte_sum({data, length}) != get_cali_u32(entry->checksum)) {
            printf("checksum mismatch!, use default : %s\n", slot.cur_path);
            return -1;
        }
    }
    if (data[0] == 0x00 || data[0] == 0xFF) { // a cleaned or an erased slot
        printf("invalid %s, use default : %s\n", slot.temp_path, slot.cur_path);
        return -1;
    }
    copy_cal_file(slot.temp_path, slot.cur_path);
    printf("validate %s cal data from flash ok!\n", slot.chip_name);
    if (entry == nullptr) {
        renew_cali_info_header(slot.chip_name, slot.offset, slot.bin_size);
    }
    return 0;
}

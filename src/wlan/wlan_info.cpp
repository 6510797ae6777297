#include "wlan/wlan_info.h"

#include "libvx.h"
#include "wlan/wlan_chip.h"
#include "wlan/wlan_header.h"
#include "wlan/wlan_slot.h"

#include <cstdio>

// A chip's entry beside what its slot really sums up to (0 when the slot cannot be read). `path` is a scratch file.
static void show_entry(const char *band, const vx_cali_header *entry, const char *path) {
    if (entry == nullptr) {
        return;
    }
    const uint32_t offset = get_cali_u32(entry->offset);
    const uint32_t bin_size = get_cali_u32(entry->bin_size);
    uint32_t sum = 0;
    if (libvx_sys_get_wlan_caldata(mtd_partition_name, offset, bin_size, path) == 0) {
        sum = get_bin_check_sum(path, static_cast<int32_t>(bin_size));
    }
    printf("%s Cali Header %.8s 0x%04X:0x%04X:0x%04X calc:0x%04X\n", band, entry->chipname, offset, bin_size,
           get_cali_u32(entry->checksum), sum);
}

int32_t show_info(int32_t, const char *const[], const char *) {
    const char *chip_2g = get_cur_chip_name(WLAN_BAND_2G);
    printf("Cur 2G chip is:%s\n", chip_2g);
    const char *chip_5g = get_cur_chip_name(WLAN_BAND_5G);
    printf("Cur 5G chip is:%s\n\n", chip_5g);

    printf("mtd partition name  :%s\n", mtd_partition_name);
    printf("  CHIP  | OFFSET |  SIZE  | CAL BIN PATH\n");
    for (const chip_cal_info &slot : cal_bin_path_tab()) {
        printf("%-7s | 0x%04X | 0x%04X | %s\n", slot.chip_name, slot.offset, slot.bin_size, slot.cur_path);
    }
    printf("\n");

    const vx_cali_header *entry_2g = load_cali_data_header(chip_2g);
    const vx_cali_header *entry_5g = load_cali_data_header(chip_5g);
    show_entry("2G", entry_2g, "/tmp/tmp2g.bin");
    show_entry("5G", entry_5g, "/tmp/tmp5g.bin");
    return 0;
}

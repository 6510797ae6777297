// The Wi-Fi calibration group: its command table, and which of the commands does what with which chip.

#include "vxcli.h"

#include "wlan/wlan_cal.h"
#include "wlan/wlan_chip.h"
#include "wlan/wlan_e2p.h"
#include "wlan/wlan_info.h"
#include "wlan/wlan_slot.h"

#include <cstdio>
#include <cstring>

using cal_action_t = int32_t (*)(const chip_cal_info &slot);

struct cal_cmd_func_s {
    const char *cmd;
    cal_action_t func;
    uint8_t band; // of the chip that is taken without an argument; 0: none
};

static constexpr cal_cmd_func_s cal_cmd_func_tab[] = {
    {"clean_cal_data", clean_cal_data, 0},
    {"write_cal_data", write_cal_data, 0},
    {"validate_cal_data", validate_cal_data, 0},
    {"clean_cal_data_2g", clean_cal_data, WLAN_BAND_2G},
    {"write_cal_data_2g", write_cal_data, WLAN_BAND_2G},
    {"validate_cal_data_2g", validate_cal_data, WLAN_BAND_2G},
    {"clean_cal_data_5g", clean_cal_data, WLAN_BAND_5G},
    {"write_cal_data_5g", write_cal_data, WLAN_BAND_5G},
    {"validate_cal_data_5g", validate_cal_data, WLAN_BAND_5G},
};

static const cal_cmd_func_s *find_cal_cmd(const char *word) {
    for (const cal_cmd_func_s &row : cal_cmd_func_tab) {
        if (strcmp(row.cmd, word) == 0) {
            return &row;
        }
    }
    return nullptr;
}

// The reserved slot and the header's own can be named like a chip.
static int32_t do_cal_data_by_chip_name(const char *chip_name, cal_action_t action) {
    const chip_cal_info *slot = find_slot(chip_name);
    if (slot == nullptr) {
        // "known" is meant for the opposite; the stations' scripts look for it as it is.
        printf("known wifi card \"%s\"\nPlease use under chip\n\n", chip_name);
        show_info(1, nullptr, nullptr);
        return -1;
    }
    return action(*slot);
}

// Succeeds whatever comes of the action.
static int32_t do_cal_data(int32_t argc, const char *const argv[], const char *) {
    const cal_cmd_func_s *row = find_cal_cmd(argv[0]);
    if (row == nullptr || row->func == nullptr) {
        printf("todo... unknown cmd : %s \n", argv[0]);
        return -1;
    }
    if (argc != 1) {
        do_cal_data_by_chip_name(argv[1], row->func);
    } else if (row->band != 0) { // else nothing is done, and nothing said
        const char *chip_name = get_cur_chip_name(row->band);
        printf("%s chip:%s\n", argv[0], chip_name);
        do_cal_data_by_chip_name(chip_name, row->func);
    }
    return 0;
}

constinit const vxcli_cmd_t wlan_cmds[] = {
    {"show_info", show_info, 0, "show e2p cfg info"},
    {"clean_cal_data", do_cal_data, 0, "clean 2g/5g cal data"},
    {"write_cal_data", do_cal_data, 0, "write 2g/5g cal data"},
    {"validate_cal_data", do_cal_data, 0, "validate 2g/5g cal data"},
    {"clean_cal_data_2g", do_cal_data, 0, "clean 2g cal data"},
    {"write_cal_data_2g", do_cal_data, 0, "write 2g cal data"},
    {"validate_cal_data_2g", do_cal_data, 0, "validate 2g cal data"},
    {"clean_cal_data_5g", do_cal_data, 0, "clean 5g cal data"},
    {"write_cal_data_5g", do_cal_data, 0, "write 5g cal data"},
    {"validate_cal_data_5g", do_cal_data, 0, "validate 5g cal data"},
    {"e2p_in_flash", e2p_in_flash, 0, "set/show e2p in flash"},
    {nullptr, nullptr, 0, nullptr},
};

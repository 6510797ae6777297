#include "wlan/wlan_chip.h"

#include <cstdio>
#include <cstring>

static constexpr char PCI_DEVICES_FILE[] = "/proc/bus/pci/devices";

// A longer line is read in pieces of this size less one, each a line of its own.
static constexpr size_t LINE_SIZE = 1024;

struct wifi_chip_info {
    char chipname[8];
    uint8_t band_bitmap;
    uint16_t vid; // PCI vendor
    uint16_t pid; // PCI device
};

// In search order: where two chips serve a band, the first one counts.
static constexpr wifi_chip_info known_chips_table[] = {
    {"mt7615", WLAN_BAND_5G | WLAN_BAND_2G, 0x14C3, 0x7615},
    {"mt7915", WLAN_BAND_5G | WLAN_BAND_2G, 0x14C3, 0x7915},
    {"mt7613", WLAN_BAND_5G, 0x14C3, 0x7663},
    {"mt7603", WLAN_BAND_2G, 0x14C3, 0x7603},
    {"mt7916", WLAN_BAND_5G | WLAN_BAND_2G, 0x14C3, 0x7906},
    {"wav600", WLAN_BAND_5G | WLAN_BAND_2G, 0x8086, 0x09D0},
};

int32_t query_wifi_card_by_vid_pid(uint16_t vid, uint16_t pid) {
    FILE *file = fopen(PCI_DEVICES_FILE, "r");
    if (file == nullptr) {
        fflush(stdout);
        fprintf(stderr, "fail to open file %s\n", PCI_DEVICES_FILE);
        return 0;
    }
    char key[9];
    snprintf(key, sizeof key, "%04x%04x", vid, pid);
    char line[LINE_SIZE];
    bool found = false;
    while (!found && fgets(line, sizeof line, file) != nullptr) {
        found = strstr(line, key) != nullptr;
    }
    fclose(file);
    return found ? 1 : 0;
}

// Every chip before the one in question is looked for, also when it serves other bands: without a PCI list there
// is a message for each.
const char *get_cur_chip_name(uint8_t band) {
    for (const wifi_chip_info &chip : known_chips_table) {
        if (query_wifi_card_by_vid_pid(chip.vid, chip.pid) != 0 && (chip.band_bitmap & band) != 0) {
            return chip.chipname;
        }
    }
    return WLAN_NOT_FOUND;
}

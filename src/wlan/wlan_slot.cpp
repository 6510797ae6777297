#include "wlan/wlan_slot.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstring>

static constexpr std::array<chip_cal_info, 8> slots = {{
    {"mt7603", "/etc/wireless/mediatek/MT7603_EEPROM.bin", 0x0000, 0x200, "/tmp/MT7603_tmp.bin"},
    {"mt7613", "/etc/wireless/mediatek/MT7663_EEPROM.bin", 0x1000, 0x600, "/tmp/MT7663_tmp.bin"}, // meant so
    {"mt7615", "/etc/wireless/mediatek/MT7615_EEPROM.bin", 0x2000, 0x400, "/tmp/MT7615_tmp.bin"},
    {"mt7915", "/etc/wireless/mediatek/MT7915_EEPROM.bin", 0x3000, 0xE00, "/tmp/MT7915_tmp.bin"},
    {"mt7916", "/etc/wireless/mediatek/MT7916_EEPROM.bin", 0x4000, 0x1000, "/tmp/MT7916_tmp.bin"},
    {"wav600", "/lib/firmware/cal_wlan0.bin", 0x5000, 0x400, "/tmp/cal_wlan0.bin"},
    {"rsv", "/tmp/rsv", 0x6000, 0x1000, "/tmp/rsv"},
    cali_header_slot,
}};

// Each slot has a flash block of its own, so that a save that is cut short harms no other.
static constexpr bool slots_are_apart() {
    for (size_t i = 0; i < slots.size(); i++) {
        if (slots[i].offset != i * WLAN_SLOT_MAX || slots[i].bin_size > WLAN_SLOT_MAX) {
            return false;
        }
    }
    return true;
}
static_assert(slots_are_apart());

std::span<const chip_cal_info> cal_bin_path_tab() {
    return slots;
}

const chip_cal_info *find_slot(const char *chip_name) {
    for (const chip_cal_info &slot : slots) {
        if (strcmp(slot.chip_name, chip_name) == 0) {
            return &slot;
        }
    }
    return nullptr;
}

void read_cal_file(const char *path, std::span<uint8_t> buffer) {
    size_t length = 0;
    FILE *file = fopen(path, "rb");
    if (file != nullptr) {
        length = fread(buffer.data(), 1, buffer.size(), file);
        fclose(file);
    }
    std::ranges::fill(buffer.subspan(length), uint8_t{0});
}

uint32_t byte_sum(std::span<const uint8_t> bytes) {
    uint32_t sum = 0;
    for (const uint8_t byte : bytes) {
        sum += byte;
    }
    return sum;
}

uint32_t get_bin_check_sum(const char *bin_path, int32_t bin_size) {
    FILE *file = fopen(bin_path, "rb");
    if (file == nullptr) {
        return 0;
    }
    uint32_t sum = 0;
    uint8_t piece[WLAN_SLOT_MAX];
    size_t left = bin_size > 0 ? static_cast<size_t>(bin_size) : 0;
    size_t length = 0;
    while (left > 0 && (length = fread(piece, 1, std::min(left, sizeof piece), file)) > 0) {
        sum += byte_sum({piece, length});
        left -= length;
    }
    fclose(file);
    return sum;
}

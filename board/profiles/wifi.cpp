#include "wifi.h"

#include <algorithm>
#include <cstring>

static constexpr wifi_chip mt7603 = {"mt7603", 0x14C3, 0x7603, "etc/wireless/mediatek/MT7603_EEPROM.bin",
                                     0x0000,   0x200};
static constexpr wifi_chip mt7613 = {"mt7613", 0x14C3, 0x7663, "etc/wireless/mediatek/MT7663_EEPROM.bin",
                                     0x1000,   0x600};
static constexpr wifi_chip mt7615 = {"mt7615", 0x14C3, 0x7615, "etc/wireless/mediatek/MT7615_EEPROM.bin",
                                     0x2000,   0x400};
static constexpr wifi_chip mt7915 = {"mt7915", 0x14C3, 0x7915, "etc/wireless/mediatek/MT7915_EEPROM.bin",
                                     0x3000,   0xE00};
static constexpr wifi_chip wav600 = {"wav600", 0x8086, 0x09D0, "lib/firmware/cal_wlan0.bin", 0x5000, 0x400};

static constexpr const wifi_chip *only_mt7915[] = {&mt7915};
static constexpr const wifi_chip *mt7615_mt7603[] = {&mt7615, &mt7603};
static constexpr const wifi_chip *mt7613_mt7603[] = {&mt7613, &mt7603};
static constexpr const wifi_chip *only_wav600[] = {&wav600};

static constexpr wifi_set sets[] = {
    {"", {}},
    {"-mt7915", only_mt7915},
    {"-mt7615-mt7603", mt7615_mt7603},
    {"-mt7613-mt7603", mt7613_mt7603},
    {"-wav600", only_wav600},
};

std::span<const wifi_set> wifi_sets() {
    return sets;
}

// One line a device: bus and function, vendor and device, interrupt, seven base addresses, seven sizes, driver.
void wifi_print_pci_devices(const wifi_set &set, FILE *file) {
    unsigned bus = 1;
    for (const wifi_chip *chip : set.chips) {
        fprintf(file, "%02x00\t%04x%04x\t%x", bus, chip->vendor, chip->device, 0x20 + bus);
        for (int region = 0; region < 14; region++) {
            const unsigned long long value = region == 0   ? 0x40000004ULL + bus * 0x100000ULL
                                             : region == 7 ? 0x100000ULL
                                                           : 0;
            fprintf(file, "\t%16llx", value);
        }
        fprintf(file, "\t%s\n", chip->name);
        bus++;
    }
}

// ---- calibration ----

static void put_u16(uint8_t *place, uint32_t value) {
    place[0] = static_cast<uint8_t>(value);
    place[1] = static_cast<uint8_t>(value >> 8);
}

static void put_u32(uint8_t *place, uint32_t value) {
    put_u16(place, value);
    put_u16(place + 2, value >> 16);
}

// Identification, MAC address, crystal trim; then, from 0x40, transmit powers in half dB: 16 bytes a channel group,
// the faster rates below the slower ones, the higher channels above the lower ones. What is left is not used.
void wifi_fill_calibration(const wifi_chip &chip, uint8_t *data) {
    const uint32_t powers = 0x40;
    const uint32_t end = chip.size / 4 * 3;
    memset(data, 0xFF, chip.size);
    memset(data, 0, powers);
    put_u16(data, chip.device);
    put_u16(data + 2, 0x0102); // version of the layout
    const uint8_t mac[] = {0x02, 0x56, 0x58, 0x10, static_cast<uint8_t>(chip.device), 0x01};
    memcpy(data + 4, mac, sizeof mac);
    data[0x3A] = 0x3C; // crystal trim
    for (uint32_t i = powers; i < end; i++) {
        const uint32_t group = (i - powers) / 16;
        const uint32_t rate = (i - powers) % 16;
        data[i] = static_cast<uint8_t>(0x26 + group % 12 - rate / 2);
    }
}

static uint32_t sum_of(std::span<const uint8_t> bytes) {
    uint32_t sum = 0;
    for (const uint8_t byte : bytes) {
        sum += byte;
    }
    return sum;
}

// 28 bytes that say what follows: three entries of 20 bytes, of which the unused ones are zero.
static void fill_header(const wifi_set &set, std::span<uint8_t, wifi_partition_size> partition) {
    const std::span<uint8_t> header = partition.subspan(0x7000, 28);
    const std::span<uint8_t> entries = partition.subspan(0x7000 + header.size(), 60);
    std::ranges::fill(header, uint8_t{0});
    std::ranges::fill(entries, uint8_t{0});
    uint8_t *entry = entries.data();
    for (const wifi_chip *chip : set.chips) {
        memcpy(entry, chip->name, strlen(chip->name));
        put_u32(entry + 8, chip->slot);
        put_u32(entry + 12, chip->size);
        put_u32(entry + 16, sum_of(partition.subspan(chip->slot, chip->size)));
        entry += 20;
    }
    memcpy(header.data(), "VXCaliInfo", 10);
    put_u32(header.data() + 16, 0x01000000); // version
    put_u32(header.data() + 20, static_cast<uint32_t>(entries.size()));
    put_u32(header.data() + 24, sum_of(entries));
}

void wifi_fill_partition(const wifi_set &set, std::span<uint8_t, wifi_partition_size> partition) {
    std::ranges::fill(partition, uint8_t{0xFF});
    for (const wifi_chip *chip : set.chips) {
        wifi_fill_calibration(*chip, partition.data() + chip->slot);
    }
    if (!set.chips.empty()) {
        fill_header(set, partition);
    }
}

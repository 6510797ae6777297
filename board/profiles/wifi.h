// The Wi-Fi chips that a unit can be fitted with, and their calibration: in the files that the drivers load, and in
// flash.
#ifndef WIFI_H
#define WIFI_H

#include <cstdint>
#include <cstdio>
#include <span>

inline constexpr uint32_t wifi_partition_size = 65536; // of hwconfig

struct wifi_chip {
    const char *name;
    uint16_t vendor; // on the PCI bus
    uint16_t device;
    const char *file; // that the driver loads, below unit/
    uint32_t slot;    // offset in the partition
    uint32_t size;    // of the data, in bytes
};

struct wifi_set {
    const char *suffix; // of the profiles' names
    std::span<const wifi_chip *const> chips;
};

// The sets that there are profiles of. The first one is empty and has an empty suffix.
std::span<const wifi_set> wifi_sets();

// The lines of /proc/bus/pci/devices.
void wifi_print_pci_devices(const wifi_set &set, FILE *file);

// Fills chip.size bytes with calibration as a radio test bench leaves it.
void wifi_fill_calibration(const wifi_chip &chip, uint8_t *data);

// Fills the partition: erased but for the chips' data and the header that describes them.
void wifi_fill_partition(const wifi_set &set, std::span<uint8_t, wifi_partition_size> partition);

#endif

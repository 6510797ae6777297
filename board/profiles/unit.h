// What a kind of unit has besides its transceiver: manufacturing information, LEDs, T-CONTs, switch ports.
#ifndef UNIT_H
#define UNIT_H

#include <cstdio>
#include <span>

struct unit_field {
    const char *key;
    const char *value;
};

struct unit_kind {
    const char *prefix;                  // of the profiles' names
    std::span<const unit_field> fields;  // what its model says
    std::span<const unit_field> serials; // what one unit of it says
    std::span<const char *const> leds;
    const char *tconts;                 // how many
    const char *eth_ports;              // how many
    std::span<const char *const> ports; // of the switch: the directories
    const char *mac_table_size;         // entries, of each port
    std::span<const char *const> phone_lines;
};

extern const unit_kind home_gateway;
extern const unit_kind single_family_unit;

// Prints the unit's manufacturing information as the library stores it. `individual` is false for the default that
// is the same on all units of its kind: MAC address and serial numbers are zero there.
void unit_print_sysinfo(const unit_kind &kind, const char *pon_mode, bool individual, FILE *file);

#endif

// Which chip is fitted, and whether it runs from its own EEPROM: both by probing the bus.
#ifndef VXCLI_BOB_IDENTIFY_H
#define VXCLI_BOB_IDENTIFY_H

#include <cstdint>
#include <optional>

// Probes for every known chip, with retries of a table selection that fails. The chip type, or nothing after
// a message. Writes BOB_UNKNOWN to the chip type file when the bus answers but no chip is known.
std::optional<int32_t> bob_identify();

// Whether the chip runs from its own EEPROM; nothing after a message when its flag cannot be read.
std::optional<bool> bob_has_eeprom(int32_t chip_type);

#endif

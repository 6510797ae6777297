// What the start-up found out about the transceiver, kept in small text files under /var.
#ifndef VXCLI_BOB_STATUS_H
#define VXCLI_BOB_STATUS_H

#include <cstdint>

inline constexpr char BOB_CHIP_TYPE_FILE[] = "/var/bob_chip_type";
inline constexpr char BOB_DRIVER_STATUS_FILE[] = "/var/bob_driver_status";
inline constexpr char BOB_E2PROM_STATUS_FILE[] = "/var/bob_e2prom_status";

// Reads the chip type: 0, or -1 when there is no file. An empty file leaves *chipType as it was, so callers
// set it to 0 (UX3320) first. The number may be any that the file holds.
int32_t get_bob_chip_type(int32_t *chipType);

// Reads the driver status, 1 for running; 0 without a file. Always returns 0.
int32_t get_bob_driver_status(int32_t *status);

// 1 when the chip runs from its own EEPROM, 0 when its calibration was loaded from a file; 0 without a file.
int32_t get_bob_e2prom_status();

// Writes the driver status. Always returns 0.
int32_t set_bob_driver_status(int32_t status);

// The start of every handler that needs the chip: reads its type into *chip_type. 0, or -1 after a message
// when the type cannot be read or no usable chip was identified.
int32_t bob_require_chip(int32_t *chip_type);

#endif

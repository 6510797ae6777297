// Calibration images to and from the chip.
#ifndef VXCLI_BOB_TRANSFER_H
#define VXCLI_BOB_TRANSFER_H

#include <cstdint>

// All work on the chip type's record. Results of the library are combined with a bitwise OR: 0 says that
// every step succeeded, anything else that some step failed; the steps after it were made all the same.

// The first 128 registers of A0. Chips whose A0 page is kept elsewhere are left alone, with result 0.
int32_t write_to_ux_a0(int32_t chip_type);

// All 256 registers of A0. For a chip of another family they are read and dropped.
int32_t read_from_ux_a0(int32_t chip_type);

// A2 lower and all tables, in the chip's order and with its waits. Ends with some table of the chip selected.
int32_t write_to_ux_a2(int32_t chip_type);
int32_t read_from_ux_a2(int32_t chip_type);

#endif

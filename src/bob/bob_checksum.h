// The checks that a calibration image must pass before it is trusted.
#ifndef VXCLI_BOB_CHECKSUM_H
#define VXCLI_BOB_CHECKSUM_H

#include <cstdint>
#include <span>

// Each works on its record's one instance, prints one line for the first check that fails and returns -1; 0
// when all pass. The UX checks store fresh chksum bytes in the record on the way, whatever the result.
int32_t check_ux_data();
int32_t check_ux3320s_data();
int32_t check_ux336x_data(int32_t chip_type);
int32_t check_gn25l95_data();
int32_t check_gn28l97_data();
int32_t check_gn28l95_data();

// The sum modulo 256.
uint8_t bob_sum(std::span<const uint8_t> bytes);

#endif

// What can be done with a chip's slot: cleaning, writing, validating.
#ifndef VXCLI_WLAN_CAL_H
#define VXCLI_WLAN_CAL_H

#include "wlan/wlan_slot.h"

#include <cstdint>

// Each prints what came of it and returns 0, or non-zero when it failed.

// Fills the slot with zeros (not with the 0xFF of erased flash) and renews the header.
int32_t clean_cal_data(const chip_cal_info &slot);

// Stores the driver's file in the slot and renews the header.
int32_t write_cal_data(const chip_cal_info &slot);

// Reads the slot back into its scratch file and checks it. Good data goes into the driver's file, and a chip
// without a header entry gets one; bad data leaves the driver's file as it is.
int32_t validate_cal_data(const chip_cal_info &slot);

#endif

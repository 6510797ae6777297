// Single words of a chip's calibration.
#ifndef VXCLI_WLAN_E2P_H
#define VXCLI_WLAN_E2P_H

#include <cstdint>

// Command handler.
int32_t e2p_in_flash(int32_t argc, const char *const argv[], const char *help);

#endif

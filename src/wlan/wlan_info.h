// What is known about the unit's Wi-Fi calibration.
#ifndef VXCLI_WLAN_INFO_H
#define VXCLI_WLAN_INFO_H

#include <cstdint>

// Command handler.
int32_t show_info(int32_t argc, const char *const argv[], const char *help);

#endif

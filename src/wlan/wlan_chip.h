// The Wi-Fi chips that the unit may be fitted with, told by their PCI identification.
#ifndef VXCLI_WLAN_CHIP_H
#define VXCLI_WLAN_CHIP_H

#include <cstdint>

// Bits of the bands that a chip serves.
inline constexpr uint8_t WLAN_BAND_5G = 1;
inline constexpr uint8_t WLAN_BAND_2G = 2;

// What get_cur_chip_name() gives when no chip serves the band.
inline constexpr char WLAN_NOT_FOUND[] = "(NOT FOUND!)";

// 1 if a device with this vendor and device identification is on the PCI bus, else 0; when that cannot be told,
// after a message on standard error.
int32_t query_wifi_card_by_vid_pid(uint16_t vid, uint16_t pid);

// The name of the first known chip that is fitted and serves one of the bands, or WLAN_NOT_FOUND.
const char *get_cur_chip_name(uint8_t band);

#endif

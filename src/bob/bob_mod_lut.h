// The UX3320's modulation table, made from a reference curve and the calibrated point.
#ifndef VXCLI_BOB_MOD_LUT_H
#define VXCLI_BOB_MOD_LUT_H

#include <array>
#include <cstddef>
#include <cstdint>

inline constexpr size_t BOB_MOD_VALUES = 84; // one 10-bit setting per two degrees
inline constexpr size_t BOB_MOD_BYTES = 105; // the settings packed, four in five bytes

using bob_mod_curve = std::array<uint16_t, BOB_MOD_VALUES>;

// The reference curve moved so that it passes through `setting` at `index` (below BOB_MOD_VALUES). Values are kept
// to 16 bits, so one below zero wraps.
bob_mod_curve bob_shift_mod_curve(uint16_t setting, size_t index);

// Four settings a, b, c, d to five bytes, most significant bits first. Shifted values are added: a setting beyond
// 10 bits spills into its neighbour.
std::array<uint8_t, BOB_MOD_BYTES> bob_pack_mod_curve(const bob_mod_curve &curve);

// Command handler. Leaves table 5 selected.
int32_t bob_generate_mod_lut(int32_t argc, const char *const argv[], const char *help);

#endif

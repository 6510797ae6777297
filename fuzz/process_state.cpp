// The two sources that keep something in a process which nothing outside can reach, and what makes them forget it.
#include "wlan/wlan_header.cpp" // NOLINT(bugprone-suspicious-include)

#include "chip_bus.cpp" // NOLINT(bugprone-suspicious-include)

void forget_private_state();
void forget_private_state() {
    std::ranges::fill(cali_header, vx_cali_header{});
    left_behind = -1;
}

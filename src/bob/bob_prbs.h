// The bit-error test of the optical link, done by the SerDes driver.
#ifndef VXCLI_BOB_PRBS_H
#define VXCLI_BOB_PRBS_H

#include <cstdint>

// Command handlers. The settings live in the driver and stay in force after the command.
int32_t bob_prbs_set(int32_t argc, const char *const argv[], const char *help);
int32_t bob_prbs_get(int32_t argc, const char *const argv[], const char *help);
int32_t bob_prbs_rxtx_set(int32_t argc, const char *const argv[], const char *help);
int32_t bob_set_prbs_rx_bist(int32_t argc, const char *const argv[], const char *help);
int32_t bob_set_prbs_rxtx_bist(int32_t argc, const char *const argv[], const char *help);

// Starts the error counter and a second vxcli in the background that prints the count after the given seconds.
int32_t bob_get_prbs_counter(int32_t argc, const char *const argv[], const char *help);
int32_t bob_prbs_counter_show(int32_t argc, const char *const argv[], const char *help);

#endif

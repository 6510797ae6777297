// Read-outs of the transceiver's optical diagnostics and of the CATV receiver, and the CATV settings.
#ifndef VXCLI_BOB_DIAG_H
#define VXCLI_BOB_DIAG_H

#include <cstdint>

// Command handlers. The library's results are not tested: what it did not fill in prints as 0.
int32_t bob_get_opt(int32_t argc, const char *const argv[], const char *help);
int32_t bob_get_catv(int32_t argc, const char *const argv[], const char *help);
int32_t bob_set_catvrf(int32_t argc, const char *const argv[], const char *help);
int32_t bob_set_catvoa(int32_t argc, const char *const argv[], const char *help);
int32_t bob_add(int32_t argc, const char *const argv[], const char *help);

#endif

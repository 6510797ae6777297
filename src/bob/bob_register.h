// The engineer's raw access to the transceiver: single registers, runs of registers, table selection.
#ifndef VXCLI_BOB_REGISTER_H
#define VXCLI_BOB_REGISTER_H

#include <cstdint>

// Command handlers.
int32_t bob_read_reg(int32_t argc, const char *const argv[], const char *help);
int32_t bob_read_regs(int32_t argc, const char *const argv[], const char *help);
int32_t bob_write_reg(int32_t argc, const char *const argv[], const char *help);
int32_t bob_write_regs(int32_t argc, const char *const argv[], const char *help);
int32_t bob_table_sel(int32_t argc, const char *const argv[], const char *help);

#endif

// Power-save modes of the vx5200, for measurements of the power consumption.
#ifndef VXCLI_SYS_POWER_H
#define VXCLI_SYS_POWER_H

#include <cstdint>

// The command handler of "MODE [OPTIONS]".
int32_t sys_power_save(int32_t argc, const char *const argv[], const char *help);

#endif

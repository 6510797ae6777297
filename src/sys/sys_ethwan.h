// The interface that serves as Ethernet WAN.
#ifndef VXCLI_SYS_ETHWAN_H
#define VXCLI_SYS_ETHWAN_H

#include <cstdint>

// Command handler.
int32_t sys_ethwan(int32_t argc, const char *const argv[], const char *help);

#endif

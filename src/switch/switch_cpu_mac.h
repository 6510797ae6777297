// CPU MAC entries: rules that take the traffic of one MAC and IP address to the CPU.
#ifndef VXCLI_SWITCH_CPU_MAC_H
#define VXCLI_SWITCH_CPU_MAC_H

#include <cstdint>

// Command handlers.
int32_t switch_add_cpu_mac(int32_t argc, const char *const argv[], const char *help);
int32_t switch_del_cpu_mac(int32_t argc, const char *const argv[], const char *help);

#endif

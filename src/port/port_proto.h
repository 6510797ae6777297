// What the switch does with the packets of well-known protocols, and how many of them it takes to the CPU.
#ifndef VXCLI_PORT_PROTO_H
#define VXCLI_PORT_PROTO_H

#include <cstdint>

// Command handlers.
int32_t port_config_proto_rate_limit(int32_t argc, const char *const argv[], const char *help);
int32_t port_config_proto_action(int32_t argc, const char *const argv[], const char *help);

#endif

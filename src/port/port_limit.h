// The rate limits of a port: of all its traffic by direction, and of what floods the switch by type.
#ifndef VXCLI_PORT_LIMIT_H
#define VXCLI_PORT_LIMIT_H

#include <cstdint>

// Command handlers.
int32_t port_config_rate_limit(int32_t argc, const char *const argv[], const char *help);
int32_t port_config_storm_rate_limit(int32_t argc, const char *const argv[], const char *help);

#endif

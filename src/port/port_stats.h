// The counters of a port.
#ifndef VXCLI_PORT_STATS_H
#define VXCLI_PORT_STATS_H

#include <cstdint>

// Command handler.
int32_t port_get_stats(int32_t argc, const char *const argv[], const char *help);

#endif

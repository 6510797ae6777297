// The link of a port: as it is, as it is forced to be, reset.
#ifndef VXCLI_PORT_LINK_H
#define VXCLI_PORT_LINK_H

#include <cstdint>

// Command handlers.
int32_t port_get_status(int32_t argc, const char *const argv[], const char *help);
int32_t port_config_mode(int32_t argc, const char *const argv[], const char *help);
int32_t port_config_reset(int32_t argc, const char *const argv[], const char *help);

#endif

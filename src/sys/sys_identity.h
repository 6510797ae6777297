// The fields whose values have a form: MAC address, GPON serial number, PHY port map, language. What a value of
// the wrong form meets differs from field to field, and is meant to.
#ifndef VXCLI_SYS_IDENTITY_H
#define VXCLI_SYS_IDENTITY_H

#include <cstdint>

// Command handlers.
int32_t sys_mac(int32_t argc, const char *const argv[], const char *help);
int32_t sys_gponsn(int32_t argc, const char *const argv[], const char *help);
int32_t sys_phyportmap(int32_t argc, const char *const argv[], const char *help);
int32_t sys_language(int32_t argc, const char *const argv[], const char *help);

#endif

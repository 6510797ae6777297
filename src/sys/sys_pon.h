// What the unit is on the PON: technology, role, detection of a rogue ONU in itself.
#ifndef VXCLI_SYS_PON_H
#define VXCLI_SYS_PON_H

#include <cstdint>

// Command handlers. With a count of SYS_SHOW_COUNT sys_pon_mode prints the stored mode only.
int32_t sys_pon_mode(int32_t argc, const char *const argv[], const char *help);
int32_t sys_onu_type(int32_t argc, const char *const argv[], const char *help);
int32_t sys_rogue(int32_t argc, const char *const argv[], const char *help);

#endif

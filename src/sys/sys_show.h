// All fields in one list, and the clearing of single ones.
#ifndef VXCLI_SYS_SHOW_H
#define VXCLI_SYS_SHOW_H

#include <cstdint>

// Command handlers.
int32_t sys_show(int32_t argc, const char *const argv[], const char *help);
int32_t sys_delete(int32_t argc, const char *const argv[], const char *help);

#endif

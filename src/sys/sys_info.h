// The system information file as a whole: brought from flash, checked, published, written back.
#ifndef VXCLI_SYS_INFO_H
#define VXCLI_SYS_INFO_H

#include <cstdint>

// Puts the factory default in the place of an information file that is missing, empty or blank flash. 0; 1 only
// when the file's length cannot be told. That the copy succeeds is not checked.
int32_t check_sys_isOK();

// Command handlers.
int32_t sys_load(int32_t argc, const char *const argv[], const char *help);
int32_t sys_save(int32_t argc, const char *const argv[], const char *help);

#endif

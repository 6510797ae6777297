// The table-aware register commands: page dump, register read, register write.
#ifndef VXCLI_BOB_TABLE_H
#define VXCLI_BOB_TABLE_H

#include <cstdint>

// Command handlers. Both select the table that they are given and leave it selected.
int32_t bob_get(int32_t argc, const char *const argv[], const char *help);
int32_t bob_set(int32_t argc, const char *const argv[], const char *help);

#endif

#include "vxcli.h"

#include <cstdio>

void show_bad_arguments(const char *value, const char *help) {
    printf("bad arguments  %s !!\n\t%s\n", value, help != nullptr ? help : "null");
}

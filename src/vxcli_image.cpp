// The firmware image group: which of the two images is in use, and the change to the other one.

#include "vxcli.h"

#include "common/shell.h"
#include "libvx.h"

#include <cstdio>

static int32_t image_check(int32_t, const char *const[], const char *) {
    char name[LIBVX_SYS_TEXT_SIZE] = {};
    libvx_sys_getMainImageMtd(name); // without an answer the name is empty
    printf("Current image mtd is: %s\n", name);
    return 0;
}

static int32_t image_switch(int32_t, const char *const[], const char *) {
    shell_run("vxImageSwitch");
    return 0;
}

constinit const vxcli_cmd_t image_cmds[] = {
    {"check", image_check, 0, "check the dev name of current active image mtd"},
    {"switch", image_switch, 0, "switch to another image mtd(Main or Slave image mtd)"},
    {nullptr, nullptr, 0, nullptr},
};

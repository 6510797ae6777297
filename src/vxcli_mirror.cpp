// The port mirroring group: the traffic of pon0 is copied to an Ethernet port. Which one is set when the tool is
// built (VXCLI_MIRROR_PORT); the texts name eth0 whatever it is, as they always have.

#include "vxcli.h"

#include "common/shell.h"

#include <cstdio>

static constexpr char ADD[] = "cmd mirror add pon0 " VXCLI_MIRROR_PORT;
static constexpr char REMOVE[] = "cmd mirror del pon0 " VXCLI_MIRROR_PORT;
static_assert(sizeof ADD <= 64, "a mirror port's name is short");

static int32_t mirror_enable(int32_t, const char *const[], const char *) {
    printf("*** mirror enable ***\nmirrored port is pon0, mirror port is eth0\n");
    shell_run("%s", ADD);
    return 0;
}

static int32_t mirror_disable(int32_t, const char *const[], const char *) {
    printf("*** mirror disable ***\nmirrored port is pon0, mirror port is eth0\n");
    shell_run("%s", REMOVE);
    return 0;
}

constinit const vxcli_cmd_t mirror_cmds[] = {
    {"enable", mirror_enable, 0, "mirror enable: mirrored port is pon0, mirror port is eth0"},
    {"disable", mirror_disable, 0, "mirror disable: mirrored port is pon0, mirror port is eth0"},
    {nullptr, nullptr, 0, nullptr},
};

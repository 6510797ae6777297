// Command rows, the handler signature and the shared bad-arguments report: what every command group plugs
// into.
#ifndef VXCLI_H
#define VXCLI_H

#include <cstdint>

// A command handler. argv[0] is the command word itself and argc counts it, so a call without arguments has
// argc 1. `help` is the row's help text and may be null. Prints its own results on standard output and
// returns 0 for success; any other value makes the dispatcher report "Execute Command Fail" and exit with
// status 1.
using vxcli_handler_t = int32_t (*)(int32_t argc, const char *const argv[], const char *help);

// One command of a group. A table of these ends with a row whose name is null.
struct vxcli_cmd_s {
    const char *name;    // matched exactly, byte for byte
    vxcli_handler_t cmd; // never null in a row with a name
    int32_t argcMin;     // least number of words that must follow the command word
    const char *helpStr; // usage text, may be null
};
using vxcli_cmd_t = vxcli_cmd_s;

// One group of commands. A table of these ends with a row whose name is null.
struct vxcli_subCmd_s {
    const char *name;
    const vxcli_cmd_t *subCmds;
};
using vxcli_subCmd_t = vxcli_subCmd_s;

// Prints the line for an argument that is out of range: `value` is the word as typed, `help` the help text
// that the handler was given (null prints "null"). The caller returns its non-zero result itself.
void show_bad_arguments(const char *value, const char *help);

// All groups in listing order, ended by a row with a null name.
extern const vxcli_subCmd_t subCmds[];

// The command tables, one per group, each defined in its group's source file.
extern const vxcli_cmd_t epon_cmds[];
extern const vxcli_cmd_t gpon_cmds[];
extern const vxcli_cmd_t sys_cmds[];
extern const vxcli_cmd_t switch_cmds[];
extern const vxcli_cmd_t bob_cmds[];
extern const vxcli_cmd_t wlan_cmds[];
extern const vxcli_cmd_t port_cmds[];
extern const vxcli_cmd_t mirror_cmds[];
extern const vxcli_cmd_t image_cmds[];
extern const vxcli_cmd_t voice_cmds[];
extern const vxcli_cmd_t consoleRedirect_cmds[];
extern const vxcli_cmd_t dnsmasq_cmds[];

#endif

// The dispatcher: group and command are looked up in constant tables, the handler's result is the exit
// status.

#include "vxcli.h"

#include <cstdio>
#include <cstring>

// One a line.
// clang-format off
constinit const vxcli_subCmd_t subCmds[] = {
    {"epon", epon_cmds},
    {"gpon", gpon_cmds},
    {"sys", sys_cmds},
    {"switch", switch_cmds},
    {"bob", bob_cmds},
    {"wlan", wlan_cmds},
    {"port", port_cmds},
    {"mirror", mirror_cmds},
    {"image", image_cmds},
    {"voice", voice_cmds},
    {"consoleRedir", consoleRedirect_cmds},
    {"dnsmasq", dnsmasq_cmds},
    {nullptr, nullptr},
};
// clang-format on

static const char *or_null(const char *text) {
    return text != nullptr ? text : "null";
}

// The row named `word` in a table that ends with a null name, or null. The first match wins.
template <typename Row>
static const Row *find_row(const Row *rows, const char *word) {
    for (const Row *row = rows; row->name != nullptr; row++) {
        if (strcmp(row->name, word) == 0) {
            return row;
        }
    }
    return nullptr;
}

// The heading, the names in columns of `width`, `per_line` to a line, then "help" right behind the last name.
template <typename Row>
static void show_names(const char *name, const Row *rows, int width, int per_line) {
    printf("Valid commands for %s are:\n", name);
    int count = 0;
    for (const Row *row = rows; row->name != nullptr; row++) {
        printf("%-*s", width, row->name);
        if (++count % per_line == 0) {
            printf("\n");
        }
    }
    printf("help\n");
}

static void show_cmds(const char *name, const vxcli_subCmd_t *cmds) {
    show_names(name, cmds, 16, 7);
}

static void show_sub_cmds(const char *name, const vxcli_cmd_t *sub_cmds) {
    int width = 16;
    for (const vxcli_cmd_t *row = sub_cmds; row->name != nullptr; row++) {
        const int length = static_cast<int>(strlen(row->name));
        // A name exactly as long as the column does not widen it and has no blank behind it: scripts know
        // that.
        if (width < length) {
            width = length + 1;
        }
    }
    show_names(name, sub_cmds, width, 112 / width);
}

static void show_sub_cmds_help(const char *name, const vxcli_cmd_t *sub_cmds) {
    printf("Valid commands for %s are:\n", name);
    for (const vxcli_cmd_t *row = sub_cmds; row->name != nullptr; row++) {
        printf("%-16s : %s\n", row->name, or_null(row->helpStr));
    }
}

int main(int argc, char *argv[]) {
    if (argc < 2) {
        show_cmds(argc > 0 ? argv[0] : "vxcli", subCmds);
        return 0;
    }
    if (strcmp(argv[1], "help") == 0) {
        show_cmds(argv[0], subCmds);
        return 0;
    }
    const vxcli_subCmd_t *group = find_row(subCmds, argv[1]);
    if (group == nullptr) {
        // An unknown group exits with 0, an unknown command with 1: stations rely on the difference.
        printf("unknow command %s\n", argv[1]);
        show_cmds(argv[0], subCmds);
        return 0;
    }
    if (argc == 2) {
        show_sub_cmds(argv[1], group->subCmds);
        return 0;
    }
    if (strcmp(argv[2], "help") == 0) {
        // The heading names "help" and not the group; it has always done so.
        show_sub_cmds_help(argv[2], group->subCmds);
        return 0;
    }
    const vxcli_cmd_t *command = find_row(group->subCmds, argv[2]);
    if (command == nullptr) {
        printf("unknow command %s\n", argv[2]);
        show_sub_cmds(argv[1], group->subCmds);
        return 1;
    }
    if (argc - 2 <= command->argcMin) {
        printf("usage for %s: %s\n", command->name, or_null(command->helpStr));
        return 0;
    }
    if (command->cmd(argc - 2, &argv[2], command->helpStr) != 0) {
        printf("Execute Command Fail\n");
        return 1;
    }
    return 0;
}

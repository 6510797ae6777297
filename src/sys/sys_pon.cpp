#include "sys/sys_pon.h"

#include "common/shell.h"
#include "common/words.h"
#include "libvx.h"
#include "sys/sys_field.h"
#include "vxcli.h"

#include <algorithm>
#include <cstdio>
#include <span>
#include <strings.h>

// ---- the mode ----

struct pon_name_s {
    const char *name; // in any case
    libvx_sys_pon_mode mode;
    bool stored_by_name = false;
};

// The first eight are in the order of the modes: their names are also what is displayed.
static constexpr pon_name_s PON_NAMES[] = {
    {"EPON", LIBVX_SYS_MODE_EPON},          {"GPON", LIBVX_SYS_MODE_GPON},
    {"XGPON", LIBVX_SYS_MODE_XGPON},        {"XGSPON", LIBVX_SYS_MODE_XGSPON},
    {"XEPON", LIBVX_SYS_MODE_XEPON},        {"XESPON", LIBVX_SYS_MODE_XESPON},
    {"ETHER", LIBVX_SYS_MODE_ETHER},        {"AUTO", LIBVX_SYS_MODE_AUTO},
    {"auto_a", LIBVX_SYS_MODE_AUTO, true},  {"auto_s", LIBVX_SYS_MODE_AUTO, true},
    {"group_0", LIBVX_SYS_MODE_AUTO, true}, {"group_1", LIBVX_SYS_MODE_AUTO, true},
    {"group_2", LIBVX_SYS_MODE_AUTO, true}, {"group_3", LIBVX_SYS_MODE_AUTO, true},
    {"group_4", LIBVX_SYS_MODE_AUTO, true}, {"group_5", LIBVX_SYS_MODE_AUTO, true},
    {"group_6", LIBVX_SYS_MODE_AUTO, true}, {"group_7", LIBVX_SYS_MODE_AUTO, true},
    {"group_8", LIBVX_SYS_MODE_AUTO, true}, {"group_9", LIBVX_SYS_MODE_AUTO, true},
};

static consteval bool display_names_are_in_order() {
    for (uint32_t mode = 0; mode <= LIBVX_SYS_MODE_AUTO; mode++) {
        if (PON_NAMES[mode].mode != mode || PON_NAMES[mode].stored_by_name) {
            return false;
        }
    }
    return true;
}
static_assert(display_names_are_in_order());

// The row that `word` names, whatever its case, or null.
template <typename Row>
static const Row *find_name(std::span<const Row> rows, const char *word) {
    const auto row =
        std::ranges::find_if(rows, [word](const Row &each) { return strcasecmp(each.name, word) == 0; });
    return row != rows.end() ? &*row : nullptr;
}

// The mode that the PON stack works in. A stack that selects by itself has none to show.
static int32_t print_working_mode() {
    uint32_t mode = 0;
    libvx_setDebugLevel(0); // a stack that does not run is no error worth a log message here
    const int32_t result = libvx_ponApi_getPonMode(&mode);
    libvx_setDebugLevel(1); // whatever it was before
    if (result != 0 || mode < LIBVX_SYS_MODE_AUTO) {
        printf("%-24s %s\n", "Working Pon Mode:", result == 0 ? PON_NAMES[mode].name : "");
    }
    return result;
}

int32_t sys_pon_mode(int32_t argc, const char *const argv[], const char *help) {
    if (argc == 1 || argc == SYS_SHOW_COUNT) {
        sys_print_field(*sys_find_field("ponmode"));
        return argc == 1 ? print_working_mode() : 0;
    }
    const pon_name_s *name = find_name<pon_name_s>(PON_NAMES, argv[1]);
    if (name == nullptr) {
        show_bad_arguments(argv[1], help);
        printf("sys ponmode fail\n");
        return 1;
    }
    // The web interface's own choice gives way to this one.
    shell_run("rm /userconfig/config/GUIPonMode 2>/dev/null");
    const int32_t result =
        name->stored_by_name ? libvx_sys_setPonModestr(argv[1]) : libvx_sys_setPonMode(name->mode);
    libvx_ponApi_setPonMode(name->mode); // also when the mode could not be stored
    sys_report("ponmode", result);
    return result;
}

// ---- the role ----

struct onu_name_s {
    const char *name; // in any case
    libvx_sys_pon_type type;
};

static constexpr onu_name_s ONU_NAMES[] = {
    {"SFU", LIBVX_SYS_TYPE_SFU},
    {"HGU", LIBVX_SYS_TYPE_HGU},
    {"MDU", LIBVX_SYS_TYPE_MDU},
    {"HGW", LIBVX_SYS_TYPE_HGW},
};

int32_t sys_onu_type(int32_t argc, const char *const argv[], const char *help) {
    if (argc == 1) {
        return sys_field(argc, argv, help);
    }
    const onu_name_s *name = find_name<onu_name_s>(ONU_NAMES, argv[1]);
    if (name == nullptr) {
        show_bad_arguments(argv[1], help);
        printf("sys onutype fail\n");
        return 1;
    }
    const int32_t result = libvx_sys_setPonType(name->type);
    if (result == 0) {
        shell_run("vxnetctl -q %s", argv[1]); // the network daemon gets the name as typed
    }
    sys_report("onutype", result);
    return 0; // unlike ponmode, a refused type is no failure of the command
}

// ---- rogue detection ----

int32_t sys_rogue(int32_t, const char *const argv[], const char *) {
    sys_report("rogue",
               libvx_ponApi_setPonSelfRogueDetect(word_to_signed_decimal(argv[1]), word_to_signed_decimal(argv[2]),
                                                  word_to_signed_decimal(argv[3])));
    return 0;
}

// What the unit is on the PON: stored mode and role, and the PON stack's own state as attributes in BOARD/pon.

#include "board_call.h"
#include "sysinfo_store.h"

#include <algorithm>
#include <fcntl.h>
#include <iterator>
#include <strings.h>
#include <unistd.h>

static constexpr char pon_directory[] = "pon";

// ---- what is stored ----

static constexpr const char *mode_names[] = {"EPON", "GPON", "XGPON", "XGSPON", "XEPON", "XESPON", "ETHER", "AUTO"};
static constexpr const char *type_names[] = {"SFU", "HGU", "MDU", "HGW"};

static constexpr const char *selection_names[] = {"auto_a",  "auto_s",  "group_0", "group_1", "group_2", "group_3",
                                                  "group_4", "group_5", "group_6", "group_7", "group_8", "group_9"};

// Stores the name of `value`.
static int32_t set_name(const char *operation, const char *key, std::span<const char *const> names,
                        uint32_t value) {
    return board_call(operation, [=](int) {
        return value < names.size() ? sysinfo_set(key, names[value]) : int32_t{LIBVX_RET_INVALID_PARAMETER};
    });
}

int32_t libvx_sys_setPonMode(libvx_sys_pon_mode mode) {
    return set_name(__func__, "MODE", mode_names, mode);
}

int32_t libvx_sys_setPonModestr(const char *name) {
    return board_call(__func__, [name](int) {
        const auto is_given = [name](const char *known) { return strcasecmp(known, name) == 0; };
        return name != nullptr && std::ranges::any_of(selection_names, is_given)
                   ? sysinfo_set("MODE", name)
                   : int32_t{LIBVX_RET_INVALID_PARAMETER};
    });
}

int32_t libvx_sys_setPonType(libvx_sys_pon_type type) {
    return set_name(__func__, "TYPE", type_names, type);
}

// ---- the PON stack ----

// A missing attribute is a stack that does not run.
int32_t libvx_ponApi_getPonMode(uint32_t *mode) {
    if (mode == nullptr) {
        return LIBVX_RET_INVALID_PARAMETER;
    }
    return board_call(__func__, [mode](int board) {
        const board_fd pon(openat(board, pon_directory, O_RDONLY | O_DIRECTORY | O_CLOEXEC));
        uint32_t number = 0;
        if (faccessat(pon.fd, "mode", F_OK, 0) != 0 || !attr_read_number(pon.fd, "mode", UINT32_MAX, &number)) {
            return LIBVX_RET_FAIL;
        }
        *mode = number;
        return LIBVX_RET_OK;
    });
}

int32_t libvx_ponApi_setPonMode(libvx_sys_pon_mode mode) {
    return board_call(__func__, [number = static_cast<uint32_t>(mode)](int board) {
        if (number >= std::size(mode_names)) {
            return LIBVX_RET_INVALID_PARAMETER;
        }
        return attr_set_number(board, pon_directory, "mode", number) ? LIBVX_RET_OK : LIBVX_RET_FILE_WRITE_FAIL;
    });
}

int32_t libvx_ponApi_setPonSelfRogueDetect(int32_t enable, int32_t autoShutdownEnable, int32_t stateClear) {
    return board_call(__func__, [=](int board) {
        for (int32_t value : {enable, autoShutdownEnable, stateClear}) {
            if (value != 0 && value != 1) {
                return LIBVX_RET_INVALID_PARAMETER;
            }
        }
        const board_fd pon(dir_lock(board, pon_directory));
        const bool ok = pon.fd >= 0 && attr_write(pon.fd, "rogue_detect", "%d", enable) &&
                        attr_write(pon.fd, "rogue_shutdown", "%d", autoShutdownEnable) &&
                        (stateClear == 0 || attr_write(pon.fd, "rogue_found", "0"));
        return ok ? LIBVX_RET_OK : LIBVX_RET_FILE_WRITE_FAIL;
    });
}

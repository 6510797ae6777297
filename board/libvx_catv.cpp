// PON services: the CATV receiver, as attributes under BOARD/optics/catv named after the record's fields.

#include "board_call.h"

#include <climits>
#include <cstdlib>

static constexpr char catv_directory[] = "optics/catv";

// Reads a decimal attribute from `min` to `max`; a missing one counts as 0.
static bool read_field(int dir, const char *name, long min, long max, long *value) {
    char text[16];
    const attr_state state = attr_read(dir, name, text);
    char *end = text;
    *value = state == attr_state::ok ? strtol(text, &end, 10) : 0;
    return state == attr_state::missing || (end != text && *end == '\0' && *value >= min && *value <= max);
}

int32_t libvx_ponApi_gponGetCatvDiag(libvx_pon_catvDiag_t *diag) {
    if (diag == nullptr) {
        return LIBVX_RET_INVALID_PARAMETER;
    }
    return board_call(__func__, [diag](int board) {
        const board_fd catv(dir_lock(board, catv_directory));
        long opt_pwr = 0;
        long out_lvl = 0;
        long temp = 0;
        long rf_switch = 0;
        long out_atte = 0;
        if (catv.fd < 0 || !read_field(catv.fd, "optPwr", INT16_MIN, INT16_MAX, &opt_pwr) ||
            !read_field(catv.fd, "outLvl", 0, UINT16_MAX, &out_lvl) ||
            !read_field(catv.fd, "temp", 0, UINT16_MAX, &temp) ||
            !read_field(catv.fd, "rfSwitch", 0, UINT8_MAX, &rf_switch) ||
            !read_field(catv.fd, "outAtte", 0, UINT8_MAX, &out_atte)) {
            return LIBVX_RET_FAIL;
        }
        *diag = {.optPwr = static_cast<int16_t>(opt_pwr),
                 .outLvl = static_cast<uint16_t>(out_lvl),
                 .temp = static_cast<uint16_t>(temp),
                 .rfSwitch = static_cast<uint8_t>(rf_switch),
                 .outAtte = static_cast<uint8_t>(out_atte)};
        return LIBVX_RET_OK;
    });
}

static int32_t set_field(const char *operation, const char *name, int32_t value) {
    return board_call(operation, [=](int board) {
        if (value < 0 || value > UINT8_MAX) {
            return LIBVX_RET_INVALID_PARAMETER;
        }
        const board_fd catv(dir_lock(board, catv_directory));
        return catv.fd >= 0 && attr_write(catv.fd, name, "%d", value) ? LIBVX_RET_OK : LIBVX_RET_FILE_WRITE_FAIL;
    });
}

int32_t libvx_ponApi_gponSetCatvRf(int32_t value) {
    return set_field(__func__, "rfSwitch", value);
}

int32_t libvx_ponApi_gponSetCatvOutAtte(int32_t value) {
    return set_field(__func__, "outAtte", value);
}

// Registers of the system-on-chip: BOARD/mem holds one attribute for each that was ever written, 0x20100858 with a
// value of the same form. All others read 0. Programs of the unit use the same attributes, under the same lock.

#include "board_dir.h"
#include "board_faults.h"
#include "board_trace.h"

#include "libvx.h"

#include <cerrno>
#include <cinttypes>
#include <cstdio>
#include <cstdlib>

struct register_name {
    char text[16];

    explicit register_name(uint32_t address) { snprintf(text, sizeof text, "0x%08" PRIx32, address); }
};

static bool register_read(int dir, const register_name &name, uint32_t *value) {
    char text[32];
    const attr_state state = attr_read(dir, name.text, text);
    char *end = text;
    errno = 0;
    const unsigned long long number = state == attr_state::ok ? strtoull(text, &end, 0) : 0;
    *value = static_cast<uint32_t>(number);
    return state == attr_state::missing ||
           (state == attr_state::ok && end != text && *end == '\0' && errno == 0 && number <= UINT32_MAX);
}

static int32_t modify(int board, uint32_t address, uint32_t low, uint32_t width, uint32_t value) {
    if (address % 4 != 0 || width < 1 || width > 32 || low > 32 - width || (width < 32 && value >> width != 0)) {
        return LIBVX_RET_INVALID_PARAMETER;
    }
    const board_fd dir(dir_lock(board, "mem"));
    const register_name name(address);
    uint32_t held = 0;
    if (dir.fd < 0 || !register_read(dir.fd, name, &held)) {
        return LIBVX_RET_FILE_READ_FAIL;
    }
    const uint32_t mask = (UINT32_MAX >> (32 - width)) << low;
    const uint32_t fresh = (held & ~mask) | (value << low);
    return attr_write(dir.fd, name.text, "0x%08" PRIx32, fresh) ? LIBVX_RET_OK : LIBVX_RET_FILE_WRITE_FAIL;
}

// Like a bus transfer it has a line of its own in the trace instead of that of a call.
int32_t vx_mem_modify(uint32_t address, uint32_t lowBit, uint32_t width, uint32_t value) {
    const board_fd board(board_open());
    if (board.fd < 0) {
        return LIBVX_RET_FAIL;
    }
    int32_t result = LIBVX_RET_FAIL;
    if (!fault_strikes(board.fd, {.operation = __func__}, &result)) {
        result = modify(board.fd, address, lowBit, width, value);
    }
    trace_line(board.fd, board_now(), "mem 0x%08" PRIx32 " %" PRIu32 " %" PRIu32 " 0x%" PRIx32 " %" PRId32, address,
               lowBit, width, value, result);
    return result;
}

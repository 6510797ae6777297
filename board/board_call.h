// What every library operation but the bus transfers does around its work.
#ifndef BOARD_CALL_H
#define BOARD_CALL_H

#include "board_dir.h"
#include "board_faults.h"
#include "board_trace.h"

#include "libvx.h"

// Runs `body(board)`, which returns the operation's result, unless an armed fault decides that result; traces the
// call. Without a board every operation fails.
template <typename body_t>
int32_t board_call(const char *operation, body_t body) {
    board_fd board(board_open());
    if (board.fd < 0) {
        return LIBVX_RET_FAIL;
    }
    int32_t result = LIBVX_RET_FAIL;
    if (!fault_strikes(board.fd, {.operation = operation}, &result)) {
        result = body(board.fd);
    }
    trace_call(board.fd, operation, result);
    return result;
}

#endif

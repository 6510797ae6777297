#include "i2c_bus.h"

#include "board_dir.h"
#include "board_faults.h"
#include "board_trace.h"
#include "i2c_device.h"

#include "libvx.h"

#include <cerrno>
#include <cstdio>
#include <fcntl.h>

static const char *outcome_word(bus_outcome outcome) {
    switch (outcome) {
    case bus_outcome::ok:
        return "ok";
    case bus_outcome::nak:
        return "nak";
    case bus_outcome::busy:
        return "busy";
    case bus_outcome::fault:
        return "fault";
    case bus_outcome::missing:
        return node_word(node_state::missing);
    case bus_outcome::denied:
        return node_word(node_state::denied);
    case bus_outcome::refused:
        return node_word(node_state::refused);
    }
    return "nak";
}

static void trace(int board, uint32_t bus, const bus_transfer &transfer, bus_outcome outcome,
                  const timespec &when) {
    char text[96];
    snprintf(text, sizeof text, "i2c %u %s 0x%02x 0x%02x %u %s", bus, transfer.write ? "write" : "read",
             transfer.device, transfer.reg, transfer.len, outcome_word(outcome));
    std::span<const uint8_t> bytes;
    if (transfer.write) {
        bytes = {transfer.write_data, transfer.len};
    } else if (outcome == bus_outcome::ok) {
        bytes = {transfer.read_data, transfer.len};
    }
    trace_transfer(board, when, text, bytes);
}

// A bus, locked for one transfer: a directory with a chip model, or a link to the node of a real one.
struct open_bus {
    board_fd fd;
    bool real;
    node_state state; // of the real one

    open_bus(int board, const char *name)
        : fd(fd_lock(openat(board, name, O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC))),
          real(fd.fd < 0 && errno == ENOTDIR),
          state(node_state::ok) {
        if (real) {
            fd.fd = node_open(board, name, node_i2c, &state);
        }
    }
};

static bus_outcome carry_out(const open_bus &bus, const bus_transfer &transfer, const timespec &now) {
    if (bus.real) {
        return bus.state == node_state::ok ? i2c_device_transfer(bus.fd.fd, transfer) : bus_outcome_of(bus.state);
    }
    return bus.fd.fd >= 0 ? chip_transfer(bus.fd.fd, transfer, now)
                          : bus_outcome::nak; // no such bus: nobody answers
}

int32_t i2c_transfer(int board, uint32_t bus, const bus_transfer &transfer) {
    char name[24];
    snprintf(name, sizeof name, "i2c/%u", bus);
    const open_bus opened(board, name);
    const timespec now = board_now(); // after the wait for the lock
    const fault_point point = {.operation = transfer.write ? "libvx_ponApi_i2cWrite" : "libvx_ponApi_i2cRead",
                               .transfer = true,
                               .device = transfer.device,
                               .reg = transfer.reg};
    bus_outcome outcome = bus_outcome::fault;
    int32_t result = LIBVX_RET_FAIL;
    if (!fault_strikes(board, point, &result)) {
        outcome = carry_out(opened, transfer, now);
        result = outcome == bus_outcome::ok ? LIBVX_RET_OK : LIBVX_RET_FAIL;
    }
    trace(board, bus, transfer, outcome, now);
    return result;
}

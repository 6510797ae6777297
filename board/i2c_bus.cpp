#include "i2c_bus.h"

#include "board_dir.h"
#include "board_faults.h"
#include "board_trace.h"

#include "libvx.h"

#include <cstdio>

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

int32_t i2c_transfer(int board, uint32_t bus, const bus_transfer &transfer) {
    char name[24];
    snprintf(name, sizeof name, "i2c/%u", bus);
    board_fd dir(dir_lock(board, name));
    const timespec now = board_now(); // after the wait for the lock
    const fault_point point = {.operation = transfer.write ? "libvx_ponApi_i2cWrite" : "libvx_ponApi_i2cRead",
                               .transfer = true,
                               .device = transfer.device,
                               .reg = transfer.reg};
    bus_outcome outcome = bus_outcome::nak; // what a bus that is not there answers
    int32_t result = LIBVX_RET_FAIL;
    if (fault_strikes(board, point, &result)) {
        outcome = bus_outcome::fault;
    } else if (dir.fd >= 0) {
        // A bus is a directory with a chip model. One that leads to a device node would be told apart here.
        outcome = chip_transfer(dir.fd, transfer, now);
        result = outcome == bus_outcome::ok ? LIBVX_RET_OK : LIBVX_RET_FAIL;
    }
    trace(board, bus, transfer, outcome, now);
    return result;
}

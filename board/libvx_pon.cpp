// PON services: the I2C bus to the transceiver, optical diagnostics.

#include "board_call.h"
#include "i2c_bus.h"

#include "libvx.h"

#include <cstring>

static constexpr uint32_t transceiver_bus = 1;
static constexpr uint32_t diagnostics_device = 0x51;
static constexpr uint8_t diagnostics_first = 0x60; // SFF-8472 bytes 96 to 105, high byte first

static bool valid(uint32_t regaddr, const uint8_t *data, uint32_t len) {
    return data != nullptr && regaddr <= 255 && len <= 256;
}

int32_t libvx_ponApi_i2cRead(uint32_t bus, uint32_t devaddr, uint32_t regaddr, uint8_t *data, uint32_t len) {
    if (!valid(regaddr, data, len)) {
        return LIBVX_RET_INVALID_PARAMETER;
    }
    board_fd board(board_open());
    if (board.fd < 0) {
        return LIBVX_RET_FAIL;
    }
    uint8_t registers[256] = {}; // a read that fails leaves the caller's data as they were
    int32_t result = i2c_transfer(board.fd, bus,
                                  {.write = false,
                                   .device = devaddr,
                                   .reg = static_cast<uint8_t>(regaddr),
                                   .len = len,
                                   .read_data = registers,
                                   .write_data = nullptr});
    if (result == LIBVX_RET_OK) {
        memcpy(data, registers, len);
    }
    return result;
}

int32_t libvx_ponApi_i2cWrite(uint32_t bus, uint32_t devaddr, uint32_t regaddr, const uint8_t *data, uint32_t len) {
    if (!valid(regaddr, data, len)) {
        return LIBVX_RET_INVALID_PARAMETER;
    }
    board_fd board(board_open());
    if (board.fd < 0) {
        return LIBVX_RET_FAIL;
    }
    return i2c_transfer(board.fd, bus,
                        {.write = true,
                         .device = devaddr,
                         .reg = static_cast<uint8_t>(regaddr),
                         .len = len,
                         .read_data = nullptr,
                         .write_data = data});
}

int32_t libvx_ponApi_eponGetOptDiag(libvx_pon_ctcOptDiag_t *diag) {
    if (diag == nullptr) {
        return LIBVX_RET_INVALID_PARAMETER;
    }
    return board_call(__func__, [diag](int board) {
        uint8_t live[10] = {};
        int32_t result = i2c_transfer(board, transceiver_bus,
                                      {.write = false,
                                       .device = diagnostics_device,
                                       .reg = diagnostics_first,
                                       .len = sizeof live,
                                       .read_data = live,
                                       .write_data = nullptr});
        if (result == LIBVX_RET_OK) {
            auto word = [&](size_t i) { return static_cast<uint16_t>(live[i] << 8 | live[i + 1]); };
            *diag = {.temp = static_cast<int16_t>(word(0)),
                     .vcc = word(2),
                     .txBias = word(4),
                     .txPwr = word(6),
                     .rxPwr = word(8)};
        }
        return result;
    });
}

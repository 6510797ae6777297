#include "i2c_device.h"

#include <algorithm>
#include <cerrno>
#include <ctime>
#include <linux/i2c-dev.h>
#include <linux/i2c.h>
#include <sys/ioctl.h>
#include <unistd.h>

// The functions below return 0 or an errno.

// One run on the wire. A read is two messages with a repeated start in between: the register, then its contents.
static int raw_transfer(int node, const bus_transfer &transfer) {
    uint8_t out[1 + 256] = {transfer.reg};
    if (transfer.write) {
        std::copy_n(transfer.write_data, transfer.len, out + 1);
    }
    const uint16_t device = static_cast<uint16_t>(transfer.device);
    const uint16_t length = static_cast<uint16_t>(transfer.len);
    const uint16_t out_length = static_cast<uint16_t>(transfer.write ? 1 + transfer.len : 1);
    i2c_msg messages[] = {{.addr = device, .flags = 0, .len = out_length, .buf = out},
                          {.addr = device, .flags = I2C_M_RD, .len = length, .buf = transfer.read_data}};
    const uint32_t count = transfer.write || length == 0 ? 1 : 2;
    i2c_rdwr_ioctl_data request = {.msgs = messages, .nmsgs = count};
    const int done = ioctl(node, I2C_RDWR, &request);
    if (done < 0) {
        return errno;
    }
    return static_cast<uint32_t>(done) == count ? 0 : EIO;
}

static bool not_acknowledged(int error) {
    return error == ENXIO || error == EREMOTEIO || error == ETIMEDOUT; // which one is the adapter's choice
}

// `count` registers from the `done`th on, as one SMBus command; with none of them the register's number alone.
static int smbus_piece(int node, const bus_transfer &transfer, uint32_t done, uint32_t count) {
    i2c_smbus_data data = {};
    data.block[0] = static_cast<uint8_t>(count);
    if (transfer.write) {
        std::copy_n(transfer.write_data + done, count, data.block + 1);
    }
    const bool read = !transfer.write && count > 0;
    const uint32_t command = count > 0 ? I2C_SMBUS_I2C_BLOCK_DATA : I2C_SMBUS_BYTE;
    i2c_smbus_ioctl_data request = {.read_write = static_cast<uint8_t>(read ? I2C_SMBUS_READ : I2C_SMBUS_WRITE),
                                    .command = static_cast<uint8_t>(transfer.reg + done),
                                    .size = command,
                                    .data = &data};
    if (ioctl(node, I2C_SMBUS, &request) < 0) {
        return errno;
    }
    if (read && data.block[0] != count) {
        return EIO;
    }
    if (read) {
        std::copy_n(data.block + 1, count, transfer.read_data + done);
    }
    return 0;
}

// A chip may write its registers after each piece and answers nothing meanwhile. So a further piece is tried until
// the chip takes it, for longer than any chip writes.
static constexpr uint32_t poll_us = 1000;
static constexpr int64_t write_us = 40'000;

static int64_t now_us() {
    timespec now = {};
    clock_gettime(CLOCK_MONOTONIC, &now);
    return int64_t{now.tv_sec} * 1'000'000 + now.tv_nsec / 1000;
}

static int polled_piece(int node, const bus_transfer &transfer, uint32_t done, uint32_t count) {
    const int64_t start = now_us();
    bool last = !transfer.write || done == 0;
    int error = smbus_piece(node, transfer, done, count);
    while (not_acknowledged(error) && !last) {
        usleep(poll_us);
        last =
            now_us() - start >= write_us; // the last try begins when the chip must be done, however slow they are
        error = smbus_piece(node, transfer, done, count);
    }
    return error;
}

// Pieces that the adapter can carry out. Those of a write end at multiples of their largest size, so that registers
// of one chip page, which has 8, 16 or 32 of them, stay together.
static int smbus_transfer(int node, unsigned long can, const bus_transfer &transfer) {
    const unsigned long needed = transfer.len == 0 ? I2C_FUNC_SMBUS_WRITE_BYTE
                                 : transfer.write  ? I2C_FUNC_SMBUS_WRITE_I2C_BLOCK
                                                   : I2C_FUNC_SMBUS_READ_I2C_BLOCK;
    if ((can & needed) == 0) {
        return EOPNOTSUPP;
    }
    if (ioctl(node, I2C_SLAVE, static_cast<unsigned long>(transfer.device)) < 0) {
        return errno; // such as a driver of the kernel's that has the device
    }
    uint32_t done = 0;
    int error = 0;
    do {
        const uint32_t largest = I2C_SMBUS_BLOCK_MAX;
        const uint32_t room = transfer.write ? largest - (transfer.reg + done) % largest : largest;
        const uint32_t count = std::min(transfer.len - done, room);
        error = polled_piece(node, transfer, done, count);
        done += count;
    } while (error == 0 && done < transfer.len);
    return error;
}

bus_outcome bus_outcome_of(node_state state) {
    switch (state) {
    case node_state::ok:
        return bus_outcome::ok;
    case node_state::missing:
        return bus_outcome::missing;
    case node_state::denied:
        return bus_outcome::denied;
    case node_state::refused:
        break;
    }
    return bus_outcome::refused;
}

static bus_outcome outcome_of(int error) {
    if (error == 0 || not_acknowledged(error)) {
        return error == 0 ? bus_outcome::ok : bus_outcome::nak;
    }
    return bus_outcome_of(node_failure(error));
}

bus_outcome i2c_device_transfer(int node, const bus_transfer &transfer) {
    if (transfer.device > 0x7F) {
        return bus_outcome::nak; // there is no such address
    }
    unsigned long can = 0;
    if (ioctl(node, I2C_FUNCS, &can) < 0) {
        return outcome_of(errno);
    }
    // Adapters with limits refuse what is too long for them as something that they cannot do.
    int error = (can & I2C_FUNC_I2C) != 0 ? raw_transfer(node, transfer) : EOPNOTSUPP;
    if (error == EOPNOTSUPP) {
        error = smbus_transfer(node, can, transfer);
    }
    return outcome_of(error);
}

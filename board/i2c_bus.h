// The I2C buses of the board, as every operation that needs one uses them.
#ifndef I2C_BUS_H
#define I2C_BUS_H

#include "chip_bus.h"

// Carries a transfer out on bus number `bus`: one at a time, with its faults, traced. Returns a libvx_retCode_t.
int32_t i2c_transfer(int board, uint32_t bus, const bus_transfer &transfer);

#endif

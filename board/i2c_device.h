// Real I2C buses, by the kernel's i2c-dev interface.
#ifndef I2C_DEVICE_H
#define I2C_DEVICE_H

#include "chip_bus.h"
#include "device_node.h"

// Carries a transfer out on the bus of an open i2c-dev node, whose lock the caller holds. A transfer of no
// registers only addresses the first one: it tells whether the chip is there. A write that fails may have been
// carried out in part.
bus_outcome i2c_device_transfer(int node, const bus_transfer &transfer);

// The outcome of a transfer on a bus whose node could not be opened.
bus_outcome bus_outcome_of(node_state state);

#endif

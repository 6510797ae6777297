// The transceiver on a bus: a model of the chip that the directory BOARD/i2c/<bus> describes.
#ifndef CHIP_BUS_H
#define CHIP_BUS_H

#include <cstdint>
#include <ctime>

enum class bus_outcome {
    ok,
    nak,   // nobody answers: no such device, or a board directory that is damaged
    busy,  // the chip is still writing
    fault, // an injected one
    // A real bus only, as the node_state of the same name.
    missing,
    denied,
    refused,
};

// One transfer. Reading fills data[0] to data[len-1], writing takes them; `len` is 0 to 256, `reg` 0 to 255.
struct bus_transfer {
    bool write;
    uint32_t device; // 7-bit address
    uint8_t reg;
    uint32_t len;
    uint8_t *read_data;
    const uint8_t *write_data;
};

// Carries a transfer out on the chip in directory `bus`, whose lock the caller holds. A read that fails may have
// filled part of the data.
bus_outcome chip_transfer(int bus, const bus_transfer &transfer, const timespec &now);

#endif

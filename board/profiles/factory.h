// What the factory knows of a chip beyond its model: the sections of its text file, which registers hold
// checksums over which, what the serial ID says.
#ifndef FACTORY_H
#define FACTORY_H

#include "../chip_models.h"

#include <cstdint>
#include <span>

// A value that changes smoothly from the first register of a section to its last, as a look-up table over
// temperature does: `from` at the cold end, `to` at the hot end, `bend` below the straight line in the middle.
struct factory_curve {
    int from;
    int to;
    int bend;
};

struct factory_section {
    const char *keyword;
    chip_page page;
    uint16_t registers;  // how many the text lists
    uint16_t filled;     // how many of them hold settings; the chip keeps the rest for itself
    factory_curve curve; // all zero: single settings, which follow no curve
};

// Registers of a table that a checksum covers, both ends included.
struct factory_range {
    uint8_t table;
    uint8_t first;
    uint8_t last;
};

struct factory_byte {
    uint8_t table;
    uint8_t reg;
    uint8_t value; // or the bits to set
};

// Where a checksum is; table 0: the chip has none.
struct factory_sum {
    uint8_t table;
    uint8_t reg;
};

struct factory_row {
    const char *chip;
    const char *file; // its name in the unit's /etc
    std::span<const factory_section> sections;
    std::span<const factory_byte> markers; // registers with a fixed value
    std::span<const factory_byte> bits;    // control bits that are on in a running chip
    std::span<const factory_range> summed; // what `sum` is the 8-bit sum of
    factory_sum sum;
    uint16_t wavelength; // of the transmitter, in nm
    uint8_t bit_rate;    // in 100 Mbit/s
};

// The row of a chip; every chip model has one.
const factory_row &factory_row_of(const chip_model &chip);

#endif

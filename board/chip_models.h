// The transceiver chips as data: which tables a chip has, how it takes writes, which registers cannot be written.
#ifndef CHIP_MODELS_H
#define CHIP_MODELS_H

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

inline constexpr uint32_t chip_a0 = 0x50; // device address of the identification page
inline constexpr uint32_t chip_a2 = 0x51; // device address of the diagnostics page and the tables
inline constexpr uint8_t chip_table_select = 0x7F;
inline constexpr uint8_t chip_table_base = 0x80; // first register of the half that shows the selected table
inline constexpr uint8_t chip_live_first = 0x60; // A2: what the chip measures right now
inline constexpr uint8_t chip_live_last = 0x69;

// A page of registers, which is a file of the board: a table by its number, or one of the two fixed pages.
using chip_page = uint16_t;
inline constexpr chip_page chip_page_a2_low = 0x100;
inline constexpr chip_page chip_page_a0 = 0x101;

// Registers that say which chip it is. They read as `bytes` for ever.
struct chip_identity {
    uint8_t table;
    uint8_t first;
    std::string_view bytes;
};

// The register that says whether the chip runs from an EEPROM of its own. Bits that say something else are set in
// both values, so whoever reads it has to mask.
struct chip_eeprom_flag {
    uint8_t table;
    uint8_t reg;
    uint8_t with;
    uint8_t without;
};

struct chip_model {
    const char *name;
    std::span<const uint8_t> tables;
    std::array<chip_identity, 2> identity; // no bytes: not there
    uint32_t a0_write_us;                  // how long the chip answers nothing after a write
    uint32_t a2_write_us;
    uint16_t write_page; // a write wraps inside a page of so many registers; a power of two up to 256
    chip_eeprom_flag eeprom_flag;
    bool a0_needs_eeprom; // nothing answers at the A0 address of a chip without EEPROM
};

std::span<const chip_model> chip_models();

// The chip of this name, or null.
const chip_model *chip_find(const char *name);

bool chip_has_table(const chip_model &chip, uint8_t table);

// Writing such a register is acknowledged and changes nothing. `index` counts from the page's first register.
bool chip_read_only(const chip_model &chip, chip_page page, uint8_t index);

// Registers in a page.
constexpr size_t chip_page_size(chip_page page) {
    return page == chip_page_a0 ? 256 : 128;
}

struct chip_page_name {
    char text[16];
};

// The name of a page's file.
chip_page_name chip_page_file(chip_page page);

#endif

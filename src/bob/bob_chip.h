// The transceiver chips as data. A row says everything that sets one chip apart; the code that walks the rows
// is written once, in the other files of this directory.
#ifndef VXCLI_BOB_CHIP_H
#define VXCLI_BOB_CHIP_H

#include <cstdint>
#include <span>

#include "bob/bob_checksum.h"
#include "bob/bob_image.h"

// The number in the chip type file. It indexes bosaChips.
enum bob_chip_type : int32_t {
    BOB_UX3320,
    BOB_GN25L95,
    BOB_UX3361,
    BOB_UX3320S,
    BOB_GN28L97B,
    BOB_GN25L95D,
    BOB_GN28L95,
    BOB_UX3326,
    BOB_GN28L96,
    BOB_UX3362S,
    BOB_GN25L99,
    BOB_UX3365,
    BOB_HLC10P0,
    BOB_HLC10P5,
    BOB_HLC10P6,
    BOB_UNKNOWN,
    BOB_CHIP_COUNT
};

// How runs of registers are written to a chip.
enum class bob_paging : uint8_t {
    none,  // not known: the calibration never writes such a chip
    whole, // any run in one transfer
    ux,    // 16-register pages with a wait after each
    gn     // 8-register pages without waits; the A0 device may live in the shadow file
};

// Where an identification probe finds this chip: `signature` stands at the probe's identification register.
// Null for chips that no probe knows.
struct bob_identity_s {
    uint8_t table;
    const char *signature;
};

// The register that says whether the chip runs from its own EEPROM: it does when (value & mask) ==
// with_eeprom.
struct bob_eeprom_flag_s {
    uint8_t table;
    uint8_t reg;
    uint8_t mask;
    uint8_t with_eeprom;
    const char *read_failure;
};

enum class bob_write_routine : uint8_t { lut, lut3, lut81 };

// One table of the calibration as it is written to the chip: `length` registers from the record's `offset`.
struct bob_write_row_s {
    uint8_t table;
    uint16_t offset;
    uint16_t length;
    bob_write_routine routine = bob_write_routine::lut;
};

// What follows the last table.
enum class bob_write_ending : uint8_t {
    none,
    tx_pulse,      // bit 6 of A2 register 0x6E set and cleared
    select_table0, // table 0 selected again
    lut2_ae_pulse  // bit 0 of register 0xAE of table 2 cleared and restored
};

// How a calibration image goes into the chip. All waits in microseconds, 0 for none.
struct bob_write_plan_s {
    std::span<const bob_write_row_s> rows; // in write order
    uint32_t before_table_us = 0;
    uint32_t after_table_us = 0;
    bob_write_ending ending = bob_write_ending::none;
    uint32_t before_pulse_us = 0;
    uint32_t in_pulse_us = 0;
    uint32_t after_pulse_us = 0;
    // A register of the last table, and its place in the record, whose bit 0 stays clear until the ending is
    // through.
    uint8_t held_reg = 0; // 0: none
    uint16_t held_offset = 0;
};

// The table numbers that a command accepts on A2. A rule without a refusal text accepts any number.
struct bob_table_rule_s {
    std::span<const uint8_t> tables;
    const char *refusal;
};

struct bob_chip_s {
    const char *name;
    const bob_image_s *image = nullptr;       // null: the chip has no calibration record
    const bob_check_plan_s *checks = nullptr; // of its image, null without a record
    const char *default_file = nullptr;       // factory default text file, null without a record
    const char *save_name = nullptr;          // the name that `save` complains under
    bob_paging paging = bob_paging::none;
    bob_identity_s identity = {};
    bob_eeprom_flag_s eeprom = {};
    const bob_write_plan_s *write_plan = nullptr;
    bob_table_rule_s table_sel = {};
    bob_table_rule_s table_get = {}; // differs from table_sel on purpose
    bob_table_rule_s table_set = {};
};

extern const bob_chip_s bosaChips[BOB_CHIP_COUNT];

// The row of a chip type; the unknown chip's row for a number that is no chip type.
const bob_chip_s &bob_chip(int32_t chip_type);

#endif

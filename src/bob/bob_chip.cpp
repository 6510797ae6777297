#include "bob/bob_chip.h"

#include <algorithm>
#include <array>

// ---- calibration tables in write order ----

static constexpr bob_write_row_s UX3320_WRITE[] = {
    {4, offsetof(bob_data_ux_s, st_bias), 105}, {5, offsetof(bob_data_ux_s, st_mod), 105},
    {6, offsetof(bob_data_ux_s, st_apd), 105},  {3, offsetof(bob_data_ux_s, st_lut3), 93, bob_write_routine::lut3},
    {0, offsetof(bob_data_ux_s, a2_low), 128},
};

static constexpr bob_write_row_s UX3320S_WRITE[] = {
    {4, offsetof(bob_data_ux3320s_s, st_bias), 105}, {5, offsetof(bob_data_ux3320s_s, st_mod), 105},
    {6, offsetof(bob_data_ux3320s_s, st_apd), 105},  {3, offsetof(bob_data_ux3320s_s, st_lut3), 125},
    {0, offsetof(bob_data_ux3320s_s, a2_low), 128},
};

static constexpr bob_write_row_s GN25L95_WRITE[] = {
    {4, offsetof(bob_data_gn_s, st_mod), 128},    {5, offsetof(bob_data_gn_s, st_bias), 128},
    {6, offsetof(bob_data_gn_s, st_apcapd), 128}, {2, offsetof(bob_data_gn_s, st_lut2), 128},
    {0, offsetof(bob_data_gn_s, a2_low), 128},
};

static constexpr bob_write_row_s UX336X_WRITE[] = {
    {0x81, offsetof(bob_data_ux336x_s, st_bias), 107}, {0x82, offsetof(bob_data_ux336x_s, st_mod), 107},
    {0x83, offsetof(bob_data_ux336x_s, st_apd), 107},  {0x84, offsetof(bob_data_ux336x_s, st_apc), 128},
    {0x85, offsetof(bob_data_ux336x_s, st_los), 128},  {0x86, offsetof(bob_data_ux336x_s, st_emp_amp), 43},
    {0x87, offsetof(bob_data_ux336x_s, st_ci_dd), 9},  {0, offsetof(bob_data_ux336x_s, a2_low), 128},
    {0x80, offsetof(bob_data_ux336x_s, st_ds), 128},
};

// On both chips of the GN28L97 family A2 lower is written up to register 0x7A only; 0x7B to 0x7F are the
// chip's own.
static constexpr bob_write_row_s GN28L97B_WRITE[] = {
    {0x81, offsetof(bob_data_gn28l97_s, st_dig_diag), 128, bob_write_routine::lut81},
    {0x80, offsetof(bob_data_gn28l97_s, st_txrx), 128},
    {0x82, offsetof(bob_data_gn28l97_s, st_bias_mod), 128},
    {0x83, offsetof(bob_data_gn28l97_s, st_apc_apd), 128},
    {0x84, offsetof(bob_data_gn28l97_s, st_er_eye), 128},
    {0x85, offsetof(bob_data_gn28l97_s, st_tx_power), 128},
    {0x86, offsetof(bob_data_gn28l97_s, st_rx_input), 64},
    {0xFF, offsetof(bob_data_gn28l97_s, st_chipid), 10},
    {0, offsetof(bob_data_gn28l97_s, a2_low), 123},
};

static constexpr bob_write_row_s GN28L96_WRITE[] = {
    {0x81, offsetof(bob_data_gn28l97_s, st_dig_diag), 128, bob_write_routine::lut81},
    {0x80, offsetof(bob_data_gn28l97_s, st_txrx), 128},
    {0, offsetof(bob_data_gn28l97_s, a2_low), 123},
    {0x82, offsetof(bob_data_gn28l97_s, st_bias_mod), 128},
    {0x83, offsetof(bob_data_gn28l97_s, st_apc_apd), 128},
    {0x84, offsetof(bob_data_gn28l97_s, st_er_eye), 128},
    {0x85, offsetof(bob_data_gn28l97_s, st_tx_power), 128},
    {0x86, offsetof(bob_data_gn28l97_s, st_rx_input), 64},
};

static constexpr bob_write_row_s GN28L95_WRITE[] = {
    {4, offsetof(bob_data_gn28l95_s, st_mod), 128},      {5, offsetof(bob_data_gn28l95_s, st_bias), 128},
    {6, offsetof(bob_data_gn28l95_s, st_apcapd), 128},   {7, offsetof(bob_data_gn28l95_s, st_trimer), 128},
    {8, offsetof(bob_data_gn28l95_s, st_eyemax), 128},   {9, offsetof(bob_data_gn28l95_s, st_rxineq), 128},
    {10, offsetof(bob_data_gn28l95_s, st_curdark), 128}, {2, offsetof(bob_data_gn28l95_s, st_lut2), 128},
    {0, offsetof(bob_data_gn28l95_s, a2_low), 128},
};

static constexpr bob_write_plan_s UX3320_PLAN = {
    .rows = UX3320_WRITE, .ending = bob_write_ending::tx_pulse, .in_pulse_us = 5000};
static constexpr bob_write_plan_s UX3320S_PLAN = {.rows = UX3320S_WRITE,
                                                  .before_table_us = 5000,
                                                  .ending = bob_write_ending::tx_pulse,
                                                  .before_pulse_us = 5000,
                                                  .in_pulse_us = 5000};
static constexpr bob_write_plan_s UX3362S_PLAN = {.rows = UX336X_WRITE,
                                                  .after_table_us = 10000,
                                                  .ending = bob_write_ending::tx_pulse,
                                                  .in_pulse_us = 10000,
                                                  .after_pulse_us = 10000};
static constexpr bob_write_plan_s UX3361_PLAN = {.rows = UX336X_WRITE,
                                                 .after_table_us = 10000,
                                                 .ending = bob_write_ending::tx_pulse,
                                                 .in_pulse_us = 10000,
                                                 .after_pulse_us = 10000,
                                                 .held_reg = 0x9D,
                                                 .held_offset = offsetof(bob_data_ux336x_s, st_ds) + 0x1D};
static constexpr bob_write_plan_s GN25L95_PLAN = {.rows = GN25L95_WRITE};
static constexpr bob_write_plan_s GN28L97B_PLAN = {.rows = GN28L97B_WRITE,
                                                   .ending = bob_write_ending::select_table0};
static constexpr bob_write_plan_s GN28L96_PLAN = {.rows = GN28L96_WRITE};
static constexpr bob_write_plan_s GN28L95_PLAN = {.rows = GN28L95_WRITE, .ending = bob_write_ending::lut2_ae_pulse};

template <typename Record>
static consteval bool rows_fit(std::span<const bob_write_row_s> rows) {
    return std::ranges::all_of(
        rows, [](const auto &row) { return row.length <= 128 && row.offset + row.length <= sizeof(Record); });
}
static_assert(rows_fit<bob_data_ux_s>(UX3320_WRITE) && rows_fit<bob_data_ux3320s_s>(UX3320S_WRITE));
static_assert(rows_fit<bob_data_ux336x_s>(UX336X_WRITE) && rows_fit<bob_data_gn_s>(GN25L95_WRITE));
static_assert(rows_fit<bob_data_gn28l97_s>(GN28L97B_WRITE) && rows_fit<bob_data_gn28l97_s>(GN28L96_WRITE));
static_assert(rows_fit<bob_data_gn28l95_s>(GN28L95_WRITE));

// ---- EEPROM flags ----
// The sense of the bits differs from family to family.

static constexpr bob_eeprom_flag_s UX336X_EEPROM = {0x80, 0xFE, 0xF0, 0x00, "bob:read DS.feh fail."};
static constexpr bob_eeprom_flag_s GN28L97_EEPROM = {0x81, 0x89, 0x01, 0x00, "bob:read LUT81.89h fail."};
// The text names register 0xC0 where 0xC7 is read: the factory's parsers know it so.
static constexpr bob_eeprom_flag_s GN28L95_EEPROM = {2, 0xC7, 0x01, 0x01, "bob:read LUT2.c0h fail."};
static constexpr bob_eeprom_flag_s GN25L95_EEPROM = {2, 0xC0, 0x01, 0x01, "bob:read LUT2.c0h fail."};
static constexpr bob_eeprom_flag_s UX3320_EEPROM = {3, 0xF0, 0xF0, 0x00, "bob:read LUT3.f0h fail."};

// ---- tables that table_sel accepts ----

static constexpr uint8_t SELECT_2_TO_6[] = {0, 2, 3, 4, 5, 6};
static constexpr uint8_t SELECT_UX336X[] = {0, 128, 129, 130, 131, 132, 133, 134, 135};
static constexpr uint8_t SELECT_GN28L97[] = {0, 128, 129, 130, 131, 132, 133, 134, 255};
static constexpr uint8_t SELECT_GN28L95[] = {0, 2, 4, 5, 6, 7, 8, 9, 10};

static constexpr bob_table_rule_s SELECT_2_TO_6_RULE = {SELECT_2_TO_6, "table must be 0,2,3,4,5,6"};
static constexpr bob_table_rule_s SELECT_UX336X_RULE = {SELECT_UX336X,
                                                        "table must be 0,128,129,130,131,132,133,134,135"};
static constexpr bob_table_rule_s SELECT_GN28L97_RULE = {SELECT_GN28L97,
                                                         "table must be 0,128,129,130,131,132,133,134,255"};
static constexpr bob_table_rule_s SELECT_GN28L95_RULE = {SELECT_GN28L95, "table must be 0,2,4,5,6,7,8,9,10"};

// ---- tables that get and set accept ----
// Unlike table_sel they know which of tables 2 and 3 a chip has.

static constexpr uint8_t TABLES_UX3320[] = {0, 3, 4, 5, 6};
static constexpr uint8_t TABLES_GN25L95[] = {0, 2, 4, 5, 6};

static constexpr bob_table_rule_s UX3320_RULE = {TABLES_UX3320,
                                                 "TABLE must be 0,3,4,5,6, when DEV-ADDRESS is 0x51"};
static constexpr bob_table_rule_s GN25L95_RULE = {TABLES_GN25L95,
                                                  "TABLE must be 0,2,4,5,6, when DEV-ADDRESS is 0x51"};
static constexpr bob_table_rule_s UX336X_RULE = {
    SELECT_UX336X, "TABLE must be 0,128,129,130,131,132,133,134,135, when DEV-ADDRESS is 0x51"};
static constexpr bob_table_rule_s GN28L97_RULE = {
    SELECT_GN28L97, "TABLE must be 0,128,129,130,131,132,133,134,255, when DEV-ADDRESS is 0x51"};
static constexpr bob_table_rule_s GN28L95_RULE = {SELECT_GN28L95,
                                                  "TABLE must be 0,2,4,5,6,7,8,9,10, when DEV-ADDRESS is 0x51"};

// ---- the chips ----

// The GN25L95's factory file has the short prefix, all others have the long one: the file names on the units.
constinit const bob_chip_s bosaChips[BOB_CHIP_COUNT] = {
    {.name = "UX3320",
     .image = &bob_image_ux,
     .checks = &check_ux_data,
     .default_file = "/etc/velmarix_default_bob.bin",
     .save_name = "ux3320",
     .paging = bob_paging::whole,
     .eeprom = UX3320_EEPROM,
     .write_plan = &UX3320_PLAN,
     .table_sel = SELECT_2_TO_6_RULE,
     .table_get = UX3320_RULE,
     .table_set = UX3320_RULE},
    {.name = "GN25L95",
     .image = &bob_image_gn,
     .checks = &check_gn25l95_data,
     .default_file = "/etc/vx_default_bob_gn25l95.bin",
     .save_name = "GN25L95",
     .paging = bob_paging::gn,
     .eeprom = GN25L95_EEPROM,
     .write_plan = &GN25L95_PLAN,
     .table_sel = SELECT_2_TO_6_RULE,
     .table_get = GN25L95_RULE,
     .table_set = GN25L95_RULE},
    {.name = "UX3361",
     .image = &bob_image_ux336x,
     .checks = &check_ux336x_data,
     .default_file = "/etc/velmarix_default_bob_ux3361.bin",
     .save_name = "ux3361",
     .paging = bob_paging::ux,
     .identity = {0x87, "UX33631"},
     .eeprom = UX336X_EEPROM,
     .write_plan = &UX3361_PLAN,
     .table_sel = SELECT_UX336X_RULE,
     .table_get = UX336X_RULE,
     .table_set = UX336X_RULE},
    {.name = "UX3320S",
     .image = &bob_image_ux3320s,
     .checks = &check_ux3320s_data,
     .default_file = "/etc/velmarix_default_bob_ux3320s.bin",
     .save_name = "ux3320s",
     .paging = bob_paging::ux,
     .eeprom = UX3320_EEPROM,
     .write_plan = &UX3320S_PLAN,
     .table_sel = SELECT_2_TO_6_RULE,
     .table_get = UX3320_RULE,
     .table_set = UX3320_RULE},
    {.name = "GN28L97B",
     .image = &bob_image_gn28l97,
     .checks = &check_gn28l97_data,
     .default_file = "/etc/velmarix_default_bob_gn28l97.bin",
     .save_name = "GN28L97B",
     .paging = bob_paging::gn,
     .identity = {0xFF, "GN28L97"},
     .eeprom = GN28L97_EEPROM,
     .write_plan = &GN28L97B_PLAN,
     .table_sel = SELECT_GN28L97_RULE,
     .table_get = GN28L97_RULE,
     .table_set = GN28L97_RULE},
    {.name = "GN25L95D",
     .image = &bob_image_gn,
     .checks = &check_gn25l95_data,
     .default_file = "/etc/velmarix_default_bob_gn25l95d.bin",
     .save_name = "GN25L95D",
     .paging = bob_paging::gn,
     .eeprom = GN25L95_EEPROM,
     .write_plan = &GN25L95_PLAN,
     .table_sel = SELECT_2_TO_6_RULE,
     .table_get = GN25L95_RULE,
     .table_set = GN25L95_RULE},
    {.name = "GN28L95",
     .image = &bob_image_gn28l95,
     .checks = &check_gn28l95_data,
     .default_file = "/etc/velmarix_default_bob_gn28l95.bin",
     .save_name = "gn28l95",
     .paging = bob_paging::gn,
     .identity = {0xFF, "\xA1"},
     .eeprom = GN28L95_EEPROM,
     .write_plan = &GN28L95_PLAN,
     .table_sel = SELECT_GN28L95_RULE,
     .table_get = GN28L95_RULE,
     .table_set = GN28L95_RULE},
    {.name = "UX3326"},
    {.name = "GN28L96",
     .image = &bob_image_gn28l97,
     .checks = &check_gn28l97_data,
     .default_file = "/etc/velmarix_default_bob_gn28l96.bin",
     .save_name = "GN28L96",
     .paging = bob_paging::gn,
     .identity = {0xFF, "GN28L96"},
     .eeprom = GN28L97_EEPROM,
     .write_plan = &GN28L96_PLAN,
     .table_sel = SELECT_GN28L97_RULE,
     .table_get = GN28L97_RULE,
     .table_set = GN28L97_RULE},
    {.name = "UX3362S",
     .image = &bob_image_ux336x,
     .checks = &check_ux336x_data,
     .default_file = "/etc/velmarix_default_bob_ux3362s.bin",
     .save_name = "ux3361", // the family saves under the UX3361's name
     .paging = bob_paging::ux,
     .identity = {0x87, "UX33630"},
     .eeprom = UX336X_EEPROM,
     .write_plan = &UX3362S_PLAN,
     .table_sel = SELECT_UX336X_RULE,
     .table_get = UX336X_RULE,
     .table_set = UX336X_RULE},
    {.name = "GN25L99"},
    {.name = "UX3365",
     .image = &bob_image_ux336x,
     .checks = &check_ux3365_data,
     .default_file = "/etc/velmarix_default_bob_ux3365.bin",
     .save_name = "ux3361",
     .paging = bob_paging::ux,
     .identity = {0x87, "UX33650"},
     .eeprom = UX336X_EEPROM,
     .write_plan = &UX3361_PLAN,
     .table_sel = SELECT_UX336X_RULE,
     .table_get = UX336X_RULE, // set takes any table: it never had a rule for this chip
     .table_set = {}},
    {.name = "HLC10P0"},
    {.name = "HLC10P5"},
    {.name = "HLC10P6"},
    {.name = "Unknown"},
};

const bob_chip_s &bob_chip(int32_t chip_type) {
    const bool known = chip_type >= 0 && chip_type < BOB_UNKNOWN;
    return bosaChips[known ? chip_type : int32_t{BOB_UNKNOWN}];
}

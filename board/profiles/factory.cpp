#include "factory.h"

#include <cstdlib>
#include <cstring>

static constexpr factory_curve settings = {0, 0, 0};
static constexpr factory_curve bias = {38, 214, 40};
static constexpr factory_curve modulation = {52, 190, 28};
static constexpr factory_curve apd = {64, 168, 6};
static constexpr factory_curve power = {120, 96, -10};
static constexpr factory_curve los = {30, 44, 2};

static constexpr factory_section ux3320_sections[] = {
    {"a0_tab", chip_page_a0, 128, 128, settings},
    {"a2_lower", chip_page_a2_low, 128, 128, settings},
    {"a2_lut3", 3, 115, 93, settings},
    {"a2_bias", 4, 105, 105, bias},
    {"a2_mod", 5, 105, 105, modulation},
    {"a2_apd", 6, 105, 105, apd},
};

static constexpr factory_section ux3320s_sections[] = {
    {"a0_tab", chip_page_a0, 128, 128, settings}, {"a2_lower", chip_page_a2_low, 128, 128, settings},
    {"a2_lut3", 3, 125, 125, settings},           {"a2_bias", 4, 105, 105, bias},
    {"a2_mod", 5, 105, 105, modulation},          {"a2_apd", 6, 105, 105, apd},
};

static constexpr factory_section ux336x_sections[] = {
    {"a0_tab", chip_page_a0, 128, 128, settings}, {"a2_lower", chip_page_a2_low, 128, 128, settings},
    {"a2_table80", 0x80, 128, 128, settings},     {"a2_table81", 0x81, 107, 107, bias},
    {"a2_table82", 0x82, 107, 107, modulation},   {"a2_table83", 0x83, 107, 107, apd},
    {"a2_table84", 0x84, 128, 128, power},        {"a2_table85", 0x85, 128, 128, los},
    {"a2_table86", 0x86, 43, 43, settings},       {"a2_table87", 0x87, 9, 9, settings},
};

static constexpr factory_section gn25l95_sections[] = {
    {"a0_tab", chip_page_a0, 256, 256, settings},
    {"a2_lower", chip_page_a2_low, 128, 128, settings},
    {"a2_lut0", 0, 128, 128, settings},
    {"a2_lut2", 2, 128, 128, settings},
    {"a2_mod", 4, 128, 128, modulation},
    {"a2_bias", 5, 128, 128, bias},
    {"a2_apcapd", 6, 128, 128, apd},
};

static constexpr factory_section gn28l97_sections[] = {
    {"a0_tab", chip_page_a0, 256, 256, settings},
    {"a2_lower", chip_page_a2_low, 128, 123, settings},
    {"a2_table80", 0x80, 128, 128, settings},
    {"a2_table81", 0x81, 128, 128, settings},
    {"a2_table82", 0x82, 128, 128, bias},
    {"a2_table83", 0x83, 128, 128, apd},
    {"a2_table84", 0x84, 128, 128, modulation},
    {"a2_table85", 0x85, 128, 128, power},
    {"a2_table86", 0x86, 64, 64, los},
    {"a2_tableFF", 0xFF, 10, 10, settings},
};

static constexpr factory_section gn28l95_sections[] = {
    {"a0_tab", chip_page_a0, 256, 256, settings},
    {"a2_lower", chip_page_a2_low, 128, 128, settings},
    {"a2_lut2", 2, 128, 128, settings},
    {"a2_mod", 4, 128, 128, modulation},
    {"a2_bias", 5, 128, 128, bias},
    {"a2_apcapd", 6, 128, 128, apd},
    {"a2_trim", 7, 128, 128, settings},
    {"a2_eyemax", 8, 128, 128, power},
    {"a2_rxineq", 9, 128, 128, los},
    {"a2_curdark", 10, 128, 128, {2, 31, 8}},
};

static constexpr factory_byte ux3320_markers[] = {{3, 0x80, 0xAA}, {3, 0xDC, 0x55}};
static constexpr factory_byte ux336x_markers[] = {{0x80, 0x80, 0xAA}};

// What the loaders clear for a moment while they write, so it shows whether it comes back.
static constexpr factory_byte ux336x_bits[] = {{0x80, 0x9D, 0x01}};
static constexpr factory_byte gn28l95_bits[] = {{2, 0xAE, 0x01}};

static constexpr factory_range ux3320_summed[] = {
    {3, 0x82, 0xD2}, {4, 0x80, 0xE8}, {5, 0x80, 0xE8}, {6, 0x80, 0xE8}};
static constexpr factory_range ux3320s_summed[] = {
    {3, 0x81, 0xA0}, {3, 0xA2, 0xD2}, {4, 0x80, 0xE8}, {5, 0x80, 0xE8}, {6, 0x80, 0xE8}};

// The UX3365 has one range more than its sisters: the last.
static constexpr factory_range ux336x_summed[] = {
    {0x80, 0x81, 0xB6}, {0x80, 0xB8, 0xE5}, {0x81, 0x80, 0xE8}, {0x82, 0x80, 0xE8}, {0x83, 0x80, 0xE8},
    {0x84, 0x80, 0xD3}, {0x84, 0xD6, 0xDD}, {0x84, 0xE3, 0xE6}, {0x85, 0x80, 0x94}, {0x85, 0xA0, 0xAA},
    {0x85, 0xB0, 0xB7}, {0x85, 0xC0, 0xD4}, {0x86, 0x80, 0xA9}, {0x84, 0xEB, 0xEE}};
static constexpr std::span<const factory_range> ux3365_summed = ux336x_summed;
static constexpr std::span<const factory_range> ux3361_summed = ux3365_summed.first(std::size(ux336x_summed) - 1);

// One function a family.

static constexpr factory_row ux3320(const char *chip, const char *file, std::span<const factory_section> sections,
                                    std::span<const factory_range> summed) {
    return {.chip = chip,
            .file = file,
            .sections = sections,
            .markers = ux3320_markers,
            .bits = {},
            .summed = summed,
            .sum = {3, 0xDB},
            .wavelength = 1310,
            .bit_rate = 12};
}

static constexpr factory_row ux336x(const char *chip, const char *file, std::span<const factory_range> summed) {
    return {.chip = chip,
            .file = file,
            .sections = ux336x_sections,
            .markers = ux336x_markers,
            .bits = ux336x_bits,
            .summed = summed,
            .sum = {0x80, 0xE6},
            .wavelength = 1270,
            .bit_rate = 100};
}

static constexpr factory_row gn(const char *chip, const char *file, uint8_t bit_rate,
                                std::span<const factory_section> sections, std::span<const factory_byte> bits) {
    return {.chip = chip,
            .file = file,
            .sections = sections,
            .markers = {},
            .bits = bits,
            .summed = {},
            .sum = {},
            .wavelength = 1310,
            .bit_rate = bit_rate};
}

static constexpr factory_row rows[] = {
    ux3320("UX3320", "velmarix_default_bob.bin", ux3320_sections, ux3320_summed),
    ux3320("UX3320S", "velmarix_default_bob_ux3320s.bin", ux3320s_sections, ux3320s_summed),
    ux336x("UX3361", "velmarix_default_bob_ux3361.bin", ux3361_summed),
    ux336x("UX3362S", "velmarix_default_bob_ux3362s.bin", ux3361_summed),
    ux336x("UX3365", "velmarix_default_bob_ux3365.bin", ux3365_summed),
    gn("GN25L95", "vx_default_bob_gn25l95.bin", 12, gn25l95_sections, {}), // the short prefix is meant
    gn("GN25L95D", "velmarix_default_bob_gn25l95d.bin", 12, gn25l95_sections, {}),
    gn("GN28L97B", "velmarix_default_bob_gn28l97.bin", 25, gn28l97_sections, {}),
    gn("GN28L96", "velmarix_default_bob_gn28l96.bin", 25, gn28l97_sections, {}),
    gn("GN28L95", "velmarix_default_bob_gn28l95.bin", 25, gn28l95_sections, gn28l95_bits),
};

const factory_row &factory_row_of(const chip_model &chip) {
    for (const factory_row &row : rows) {
        if (strcmp(row.chip, chip.name) == 0) {
            return row;
        }
    }
    abort(); // a chip model without a row here
}

#include "chip_models.h"

#include <algorithm>
#include <cstdio>
#include <cstring>

using namespace std::string_view_literals;

static constexpr uint8_t ux3320_tables[] = {0, 3, 4, 5, 6};
static constexpr uint8_t ux336x_tables[] = {0, 0x80, 0x81, 0x82, 0x83, 0x84, 0x85, 0x86, 0x87};
static constexpr uint8_t gn25l95_tables[] = {0, 2, 4, 5, 6};
static constexpr uint8_t gn28l97_tables[] = {0, 0x80, 0x81, 0x82, 0x83, 0x84, 0x85, 0x86, 0xFF};
static constexpr uint8_t gn28l95_tables[] = {0, 2, 4, 5, 6, 7, 8, 9, 10, 0xFF};

static constexpr uint32_t write_us = 4000;

// One function a family; what differs inside it is the name and the identity.

static constexpr chip_model ux3320s(const char *name, std::string_view name_registers) {
    return {.name = name,
            .tables = ux3320_tables,
            .identity = {{{3, 0xD0, "\xA2"sv}, {3, 0xF5, name_registers}}},
            .a0_write_us = write_us,
            .a2_write_us = write_us,
            .write_page = 16,
            .eeprom_flag = {.table = 3, .reg = 0xF0, .with = 0x05, .without = 0x15},
            .a0_needs_eeprom = false};
}

// The forerunner takes writes of any length at once, and its name is not in its registers.
static constexpr chip_model ux3320(const char *name) {
    chip_model chip = ux3320s(name, {});
    chip.write_page = 256;
    chip.a0_write_us = chip.a2_write_us = 0;
    return chip;
}

static constexpr chip_model ux336x(const char *name, std::string_view name_registers) {
    return {.name = name,
            .tables = ux336x_tables,
            .identity = {{{0x87, 0x80, name_registers}}},
            .a0_write_us = write_us,
            .a2_write_us = write_us,
            .write_page = 16,
            .eeprom_flag = {.table = 0x80, .reg = 0xFE, .with = 0x05, .without = 0x15},
            .a0_needs_eeprom = false};
}

static constexpr chip_model gn(const char *name, std::span<const uint8_t> tables, const chip_eeprom_flag &flag,
                               const chip_identity &identity) {
    return {.name = name,
            .tables = tables,
            .identity = {{identity}},
            .a0_write_us = write_us,
            .a2_write_us = 0,
            .write_page = 8,
            .eeprom_flag = flag,
            .a0_needs_eeprom = true};
}

static constexpr chip_eeprom_flag gn25l95_flag = {.table = 2, .reg = 0xC0, .with = 0x81, .without = 0x80};
static constexpr chip_eeprom_flag gn28l97_flag = {.table = 0x81, .reg = 0x89, .with = 0x80, .without = 0x81};
static constexpr chip_eeprom_flag gn28l95_flag = {.table = 2, .reg = 0xC7, .with = 0x81, .without = 0x80};

static constexpr chip_model models[] = {
    ux3320("UX3320"),
    ux3320s("UX3320S", "UX3320S"sv),
    ux336x("UX3361", "UX33631"sv),
    ux336x("UX3362S", "UX33630"sv),
    ux336x("UX3365", "UX33650"sv),
    gn("GN25L95", gn25l95_tables, gn25l95_flag, {2, 0xD1, "\xA3"sv}),
    gn("GN25L95D", gn25l95_tables, gn25l95_flag, {2, 0xD1, "\xA4"sv}),
    gn("GN28L97B", gn28l97_tables, gn28l97_flag, {0xFF, 0x80, "GN28L97"sv}),
    gn("GN28L96", gn28l97_tables, gn28l97_flag, {0xFF, 0x80, "GN28L96"sv}),
    gn("GN28L95", gn28l95_tables, gn28l95_flag, {0xFF, 0x80, "\xA1"sv}),
};

std::span<const chip_model> chip_models() {
    return models;
}

const chip_model *chip_find(const char *name) {
    for (const chip_model &chip : models) {
        if (strcmp(chip.name, name) == 0) {
            return &chip;
        }
    }
    return nullptr;
}

bool chip_has_table(const chip_model &chip, uint8_t table) {
    return memchr(chip.tables.data(), table, chip.tables.size()) != nullptr;
}

bool chip_read_only(const chip_model &chip, chip_page page, uint8_t index) {
    if (page == chip_page_a2_low) {
        return index >= chip_live_first && index <= chip_live_last;
    }
    uint32_t reg = static_cast<uint32_t>(chip_table_base) + index;
    if (page == chip.eeprom_flag.table && reg == chip.eeprom_flag.reg) {
        return true;
    }
    return std::ranges::any_of(chip.identity, [=](const chip_identity &run) {
        return page == run.table && reg >= run.first && reg < run.first + run.bytes.size();
    });
}

chip_page_name chip_page_file(chip_page page) {
    if (page == chip_page_a0) {
        return {"a0.bin"};
    }
    if (page == chip_page_a2_low) {
        return {"a2_low.bin"};
    }
    chip_page_name name;
    snprintf(name.text, sizeof name.text, "table_%02x.bin", page);
    return name;
}

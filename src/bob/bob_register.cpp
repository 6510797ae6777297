#include "bob/bob_register.h"

#include "bob/bob_bus.h"
#include "bob/bob_chip.h"
#include "bob/bob_status.h"
#include "common/elapsed.h"
#include "common/words.h"
#include "libvx.h"

#include <algorithm>
#include <array>
#include <cstdio>

// ---- words ----
// Each of these takes one word, null when it was not given, and gives false after the word's own message.

static bool refuse(const char *message) {
    printf("%s\n", message);
    return false;
}

// The device addresses that a command accepts. 160 and 162, the 8-bit forms, mean 0x50 and 0x51.
struct device_rule_s {
    std::span<const uint32_t> accepted;
    const char *refusal;
};

static constexpr uint32_t REGISTER_DEVICES[] = {0x50, 0x51, 160, 162};
// 0x58 and 0xB7 are taken without being listed in the message: it has always been so.
static constexpr uint32_t RUN_DEVICES[] = {0x50, 0x51, 160, 162, 0x55, 0xAA, 0x58, 0xB7};
static constexpr device_rule_s REGISTER_RULE = {REGISTER_DEVICES,
                                                "DEV-ADDRESS invalid, should be [0x50/0x51/160/162]"};
static constexpr device_rule_s RUN_RULE = {RUN_DEVICES,
                                           "DEV-ADDRESS invalid, should be [0x50/0x51/160/162/0x55/0xaa]"};

static bool take_device(const char *word, const device_rule_s &rule, uint32_t *device) {
    if (word == nullptr) {
        return refuse("Please specify DEV-ADDRESS.");
    }
    const std::optional<uint32_t> number = word_to_u32(word);
    if (!number) {
        return refuse("DEV-ADDRESS invalid.");
    }
    if (std::ranges::find(rule.accepted, *number) == rule.accepted.end()) {
        return refuse(rule.refusal);
    }
    const bool eight_bit = *number == 160 || *number == 162;
    *device = eight_bit ? *number / 2 : *number;
    return true;
}

static bool take_register(const char *word, uint32_t *reg) {
    if (word == nullptr) {
        return refuse("Please specify REG-ADDRESS.");
    }
    const std::optional<uint32_t> number = word_to_u32(word);
    if (!number || *number >= BOB_REGISTERS) {
        return refuse("REG-ADDRESS invalid.");
    }
    *reg = *number;
    return true;
}

// The length of a run that begins at `reg`. Only the low 16 bits of the number count.
static bool take_length(const char *word, uint32_t reg, uint32_t *length) {
    if (word == nullptr) {
        return refuse("Please specify data length.");
    }
    const std::optional<uint32_t> number = word_to_u32(word);
    if (!number) {
        return refuse("Length invalid.");
    }
    *length = *number & 0xFFFF;
    if (*length + reg > BOB_REGISTERS) {
        return refuse("Length is out of registers.");
    }
    return true;
}

static bool take_data(const char *word, uint8_t *data) {
    const std::optional<uint8_t> value = bob_data_word(word);
    if (!value) {
        return refuse("Data value invalid.");
    }
    *data = *value;
    return true;
}

static const char *word_at(int32_t argc, const char *const argv[], int32_t index) {
    return index < argc ? argv[index] : nullptr;
}

// ---- single registers ----

// DEV-ADDRESS and REG-ADDRESS of a command.
static bool take_place(int32_t argc, const char *const argv[], const device_rule_s &rule, uint32_t *device,
                       uint32_t *reg) {
    return take_device(word_at(argc, argv, 1), rule, device) && take_register(word_at(argc, argv, 2), reg);
}

int32_t bob_read_reg(int32_t argc, const char *const argv[], const char *) {
    uint32_t device = 0;
    uint32_t reg = 0;
    if (!take_place(argc, argv, REGISTER_RULE, &device, &reg)) {
        return -1;
    }
    if (argc > 3) {
        printf("Invalid command.\n");
        return -1;
    }
    int32_t chip_type = 0;
    if (bob_require_chip(&chip_type) != 0) {
        return -1;
    }
    uint8_t value = 0;
    if (bob_read_run(bob_is_shadowed(chip_type, device), BOB_BUS, device, reg, {&value, 1}) != 0) {
        printf("vxcli bob read_reg fail.\n");
        return 0; // a transfer that fails is no failure of the command
    }
    printf("Bob chip_type: %s\n", bob_chip(chip_type).name);
    printf("vxcli bob read_reg %s %s %d\n", argv[1], argv[2], int{value});
    return 0;
}

int32_t bob_write_reg(int32_t argc, const char *const argv[], const char *) {
    uint32_t device = 0;
    uint32_t reg = 0;
    if (!take_place(argc, argv, REGISTER_RULE, &device, &reg)) {
        return -1;
    }
    if (argc < 4) {
        printf("Please specify data.\n");
        return -1;
    }
    uint8_t value = 0;
    if (!take_data(argv[3], &value)) {
        return -1;
    }
    if (argc > 4) {
        printf("Invalid command.\n");
        return -1;
    }
    int32_t chip_type = 0;
    if (bob_require_chip(&chip_type) != 0) {
        return -1;
    }
    const int32_t result = bob_is_shadowed(chip_type, device)
                               ? write_a0_to_file(static_cast<int32_t>(reg), &value, 1)
                               : bob_write_byte(device, reg, value);
    if (result != 0) {
        printf("vxcli bob write_reg fail\n");
        return 0;
    }
    printf("Bob chip_type: %s\n", bob_chip(chip_type).name);
    printf("vxcli bob write_reg OK\n");
    return 0;
}

// ---- runs of registers ----

int32_t bob_read_regs(int32_t argc, const char *const argv[], const char *) {
    uint32_t device = 0;
    uint32_t reg = 0;
    uint32_t length = 0;
    if (!take_place(argc, argv, RUN_RULE, &device, &reg) || !take_length(word_at(argc, argv, 3), reg, &length)) {
        return -1;
    }
    if (argc > 4) {
        printf("Invalid command.\n");
        return -1;
    }
    int32_t chip_type = 0;
    if (bob_require_chip(&chip_type) != 0) {
        return -1;
    }
    // The two sources differ in the failure's full stop and in the base of the values: parsers know both.
    const bool shadowed = bob_is_shadowed(chip_type, device);
    std::array<uint8_t, BOB_REGISTERS> values = {};
    if (bob_read_run(shadowed, BOB_BUS, device, reg, std::span(values).first(length)) != 0) {
        printf(shadowed ? "vxcli bob read_regs fail.\n" : "vxcli bob read_regs fail\n");
        return 0;
    }
    printf("Bob chip_type: %s\n", bob_chip(chip_type).name);
    printf("vxcli bob read_regs %s %s ", argv[1], argv[2]);
    for (uint32_t i = 0; i < length; i++) {
        printf(shadowed ? "%d " : "0x%02x ", values[i]);
    }
    printf("\n");
    return 0;
}

int32_t bob_write_regs(int32_t argc, const char *const argv[], const char *) {
    uint32_t device = 0;
    uint32_t reg = 0;
    uint32_t length = 0;
    if (!take_place(argc, argv, RUN_RULE, &device, &reg) || !take_length(word_at(argc, argv, 3), reg, &length)) {
        return -1;
    }
    if (static_cast<uint32_t>(argc) != length + 4) {
        printf("Data number is not match legth.\n");
        return -1;
    }
    std::array<uint8_t, BOB_REGISTERS> values = {};
    for (uint32_t i = 0; i < length; i++) {
        if (!take_data(argv[4 + i], &values[i])) {
            return -1;
        }
    }
    int32_t chip_type = 0;
    if (bob_require_chip(&chip_type) != 0) {
        return -1;
    }
    const bob_chip_s &chip = bob_chip(chip_type);
    const timeval start = elapsed_start();
    // A chip whose paging is not known is not written, and that counts as success: stations rely on it.
    if (chip.paging != bob_paging::none &&
        bob_write_run(chip_type, BOB_BUS, device, reg, std::span(values).first(length)) != 0) {
        printf("vxcli bob write_regs fail\n");
        return 0;
    }
    const double duration = elapsed_seconds(start);
    printf("Bob chip_type: %s\n", chip.name);
    printf("vxcli bob write_regs OK\n");
    printf("vxcli bob write_regs duration: %.6f\n", duration);
    return 0;
}

// ---- table selection ----

int32_t bob_table_sel(int32_t argc, const char *const argv[], const char *) {
    int32_t chip_type = 0;
    if (bob_require_chip(&chip_type) != 0) {
        return -1;
    }
    if (argc != 2) {
        printf("Invalid command.\n");
        return -1;
    }
    const std::optional<uint32_t> number = word_to_u32(argv[1]);
    if (!number) {
        printf("table invalid.\n");
        return -1;
    }
    const bob_table_rule_s &rule = bob_chip(chip_type).table_sel;
    if (rule.refusal != nullptr && std::ranges::find(rule.tables, *number) == rule.tables.end()) {
        printf("%s\n", rule.refusal);
        return -1;
    }
    // The UX3320 shows as table 3 what its siblings call table 2.
    const uint32_t table = chip_type == BOB_UX3320 && *number == 2 ? 3 : *number;
    const bool selected = bob_select_table(static_cast<uint8_t>(table)) == 0;
    printf("vxcli bob table_sel %s\n", selected ? "OK" : "fail");
    return 0;
}

#include "bob/bob_table.h"

#include "bob/bob_bus.h"
#include "bob/bob_chip.h"
#include "bob/bob_status.h"
#include "common/words.h"

#include <algorithm>
#include <array>
#include <cstdio>

static constexpr char GET_USAGE[] = "Usage: vxcli bob get I2CBUS DEV-ADDRESS TABLE [REG-ADDRESS] [LENGTH]\n"
                                    "e.g.: vxcli bob get 0 0x51 0 0x10 4\n"
                                    "I2CBUS is an integer (0,1,2...)\n"
                                    "DEV-ADDRESS is an integer (0x50 or 0x51)\n"
                                    "TABLE is an integer (0,2,3,4,5,6,7,8,9,10,128,129...)\n"
                                    "REG-ADDRESS is an integer (0-0xFF)\n"
                                    "LENGTH is an integer (1-256)";

static constexpr char SET_USAGE[] =
    "Usage: vxcli bob set I2CBUS DEV-ADDRESS TABLE REG-ADDRESS LENGTH DATA1 [DATA2]...\n"
    "e.g.: vxcli bob set 0 0x50 0 0x10 4 0x43 0x44 0x45 0x48\n"
    "I2CBUS is an integer (0,1,2...)\n"
    "DEV-ADDRESS is an integer (0x50 or 0x51)\n"
    "TABLE is an integer (0,2,3,4,5,6,7,8,9,10,128,129...)\n"
    "REG-ADDRESS is an integer (0-0xFF)\n"
    "LENGTH is an integer (1-256)\n"
    "DATA is an integer (0-0xFF), the DATA number must match the LENGTH";

// Words of both commands, behind the command word.
enum word_index : int32_t { BUS_WORD = 1, DEVICE_WORD, TABLE_WORD, REG_WORD, LENGTH_WORD, DATA_WORD };

struct page_s {
    int32_t chip_type;
    uint32_t bus; // of the transfers; the table selection always goes to BOB_BUS
    uint32_t device;
};

static bool refuse(const char *message, const char *usage) {
    printf("%s\n%s\n", message, usage);
    return false;
}

// The common start: chip, bus, device, and that a table was given. False after a message.
static bool take_page(int32_t argc, const char *const argv[], const char *usage, page_s *page) {
    page->chip_type = 0;
    if (get_bob_chip_type(&page->chip_type) != 0) {
        printf("Check bosa chip type fail!\n");
        return false;
    }
    if (&bob_chip(page->chip_type) == &bosaChips[BOB_UNKNOWN]) {
        printf("bob:BOSA Chip Type: Unknown.\n"); // unlike elsewhere, this does not end the command
    }
    if (argc <= BUS_WORD) {
        return refuse("Please specify i2c-bus number.", usage);
    }
    const std::optional<uint32_t> bus = word_to_u32(argv[BUS_WORD]);
    if (!bus) {
        return refuse("i2c-bus number invalid. ex: 0, 1, 2 ...", usage);
    }
    if (argc <= DEVICE_WORD) {
        return refuse("Please specify DEV-ADDRESS.", usage);
    }
    const std::optional<uint32_t> device = word_to_u32(argv[DEVICE_WORD]);
    if (!device) {
        return refuse("DEV-ADDRESS invalid.", usage);
    }
    if (*device != BOB_A0 && *device != BOB_A2) {
        return refuse("DEV-ADDRESS invalid, should be 0x50 or 0x51", usage);
    }
    if (argc <= TABLE_WORD) {
        return refuse("Please specify table.", usage);
    }
    page->bus = *bus;
    page->device = *device;
    return true;
}

// Checks the table word against the chip's rule and selects the table. False after a message.
static bool take_table(const char *word, const page_s &page, const bob_table_rule_s &rule, const char *usage) {
    const std::optional<uint32_t> table = word_to_u32(word);
    if (!table) {
        return refuse("TABLE invalid.", usage);
    }
    if (page.device == BOB_A0 && *table != 0) {
        printf("TABLE must be 0, when DEV-ADDRESS is 0x50\n");
        return false;
    }
    const bool checked = page.device == BOB_A2 && rule.refusal != nullptr;
    if (checked && std::ranges::find(rule.tables, *table) == rule.tables.end()) {
        printf("%s\n", rule.refusal);
        return false;
    }
    if (bob_select_table(static_cast<uint8_t>(*table)) != 0) {
        printf("i2c switch tab %d fail.\n", static_cast<int>(*table));
        return false;
    }
    return true;
}

static bool take_register(const char *word, const char *usage, uint32_t *reg) {
    const std::optional<uint32_t> number = word_to_u32(word);
    if (!number || *number >= BOB_REGISTERS) {
        return refuse("REG-ADDRESS invalid.", usage);
    }
    *reg = *number;
    return true;
}

static bool length_fits(uint32_t reg, uint32_t length) {
    return length != 0 && length + reg <= BOB_REGISTERS;
}

// ---- get ----

static int32_t fetch(const page_s &page, uint32_t reg, std::span<uint8_t> values) {
    return bob_read_run(bob_is_shadowed(page.chip_type, page.device), page.bus, page.device, reg, values);
}

// Rows of 16 bytes, each behind the offset of its first one.
static void print_rows(std::span<const uint8_t> values) {
    for (size_t i = 0; i < values.size(); i++) {
        if (i % 16 == 0) {
            printf("%02zx; ", i);
        }
        printf("%02x ", values[i]);
        if (i % 16 == 15) {
            printf("\n");
        }
    }
    printf("\n");
}

static int32_t dump_page(const page_s &page) {
    std::array<uint8_t, BOB_REGISTERS> values = {};
    if (fetch(page, 0, values) != 0) {
        printf("bob get reg fail\n");
        return 0;
    }
    printf("     0  1  2  3  4  5  6  7  8  9  a  b  c  d  e  f\n");
    print_rows(values);
    return 0;
}

static int32_t get_register(const page_s &page, uint32_t reg) {
    uint8_t value = 0;
    if (fetch(page, reg, {&value, 1}) != 0) {
        printf("bob get reg fail.\n");
        return 0;
    }
    printf("data = 0x%0x\n", unsigned{value});
    return 0;
}

// The rows are labelled with the offset from `reg`, not with the register.
static int32_t get_run(int32_t argc, const char *const argv[], const page_s &page, uint32_t reg) {
    const std::optional<uint32_t> number = word_to_u32(argv[LENGTH_WORD]);
    if (!number) {
        printf("Length invalid.\n"); // without the usage, unlike set
        return -1;
    }
    const uint32_t length = *number & 0xFFFF;
    if (!length_fits(reg, length)) {
        refuse("Length is out of registers.", GET_USAGE);
        return -1;
    }
    if (argc > LENGTH_WORD + 1) {
        return 0; // a word too many: nothing is read and nothing said, which scripts take for success
    }
    std::array<uint8_t, BOB_REGISTERS> values = {};
    if (fetch(page, reg, std::span(values).first(length)) != 0) {
        printf("bob get reg fail\n");
        return 0;
    }
    print_rows(std::span(values).first(length));
    return 0;
}

int32_t bob_get(int32_t argc, const char *const argv[], const char *) {
    page_s page = {};
    if (!take_page(argc, argv, GET_USAGE, &page)) {
        return -1;
    }
    // The register is judged before the table.
    uint32_t reg = 0;
    if (argc > REG_WORD && !take_register(argv[REG_WORD], GET_USAGE, &reg)) {
        return -1;
    }
    if (!take_table(argv[TABLE_WORD], page, bob_chip(page.chip_type).table_get, GET_USAGE)) {
        return -1;
    }
    if (argc <= REG_WORD) {
        return dump_page(page);
    }
    if (argc <= LENGTH_WORD) {
        return get_register(page, reg);
    }
    return get_run(argc, argv, page, reg);
}

// ---- set ----

// REG-ADDRESS, LENGTH and the number of data words. False after a message.
static bool take_run(int32_t argc, const char *const argv[], uint32_t *reg, uint32_t *length) {
    if (argc <= REG_WORD) {
        return refuse("Please specify REG-ADDRESS.", SET_USAGE);
    }
    if (!take_register(argv[REG_WORD], SET_USAGE, reg)) {
        return false;
    }
    if (argc <= LENGTH_WORD) {
        return refuse("Please specify data length.", SET_USAGE);
    }
    const std::optional<uint32_t> number = word_to_u32(argv[LENGTH_WORD]);
    if (!number) {
        return refuse("Length invalid.", SET_USAGE);
    }
    *length = *number & 0xFFFF;
    if (!length_fits(*reg, *length)) {
        return refuse("Length is out of registers.", SET_USAGE);
    }
    if (argc <= DATA_WORD) {
        return refuse("Please specify data.", SET_USAGE);
    }
    if (static_cast<uint32_t>(argc) != *length + DATA_WORD) {
        return refuse("Data number is not match legth.", SET_USAGE);
    }
    return true;
}

int32_t bob_set(int32_t argc, const char *const argv[], const char *) {
    page_s page = {};
    if (!take_page(argc, argv, SET_USAGE, &page)) {
        return -1;
    }
    // The table is selected before the other words are looked at, and stays so when they are bad.
    if (!take_table(argv[TABLE_WORD], page, bob_chip(page.chip_type).table_set, SET_USAGE)) {
        return -1;
    }
    uint32_t reg = 0;
    uint32_t length = 0;
    if (!take_run(argc, argv, &reg, &length)) {
        return -1;
    }
    std::array<uint8_t, BOB_REGISTERS> values = {};
    for (uint32_t i = 0; i < length; i++) {
        const std::optional<uint8_t> value = bob_data_word(argv[DATA_WORD + i]);
        if (!value) {
            printf("Data value invalid.\n");
            return -1;
        }
        values[i] = *value;
    }
    const bool written =
        bob_write_run(page.chip_type, page.bus, page.device, reg, std::span(values).first(length)) == 0;
    printf("bob set reg %s\n", written ? "success" : "fail");
    return 0;
}

#include "bob/bob_identify.h"

#include "bob/bob_bus.h"
#include "bob/bob_chip.h"
#include "bob/bob_status.h"
#include "common/shell.h"
#include "libvx.h"

#include <cstdio>
#include <cstring>
#include <unistd.h>

static constexpr int MAX_SWITCH_FAILURES = 3;
static constexpr uint32_t RETRY_WAIT_US = 500000;
static constexpr uint32_t SIGNATURE_SIZE = 7;

// What a probe found: a chip type, or one of these.
enum probe_result : int32_t {
    PROBE_NEXT = -1,  // not this chip
    PROBE_AGAIN = -2, // table selection failed: start again with the first probe
    PROBE_STOP = -3   // give up
};

enum class switch_result : uint8_t { selected, again, failed };

// Selects a probe's table. One counter of failures serves the whole identification.
static switch_result switch_for_probe(uint8_t table, int &failures) {
    if (bob_select_table(table) == 0) {
        return switch_result::selected;
    }
    if (++failures < MAX_SWITCH_FAILURES) {
        printf("i2c switch tab %d fail %d times, retry it after sleep 500ms\n", int{table}, failures);
        usleep(RETRY_WAIT_US);
        return switch_result::again;
    }
    printf("i2c switch tab %d fail.\n", int{table});
    return switch_result::failed;
}

static int32_t give_up(const char *message) {
    if (message != nullptr) {
        printf("%s\n", message);
    }
    printf("Check bosa chip type fail!\n");
    return PROBE_STOP;
}

// A probe for the chips whose signature stands at 0x80 of the probe's table and that keep the table selected.
// `signature_length` registers of it count.
static int32_t probe_signature(uint8_t table, size_t signature_length, int &failures) {
    switch (switch_for_probe(table, failures)) {
    case switch_result::again:
        return PROBE_AGAIN;
    case switch_result::failed:
        return PROBE_NEXT;
    case switch_result::selected:
        break;
    }
    uint8_t id[SIGNATURE_SIZE] = {};
    if (libvx_ponApi_i2cRead(BOB_BUS, BOB_A2, BOB_A2_UPPER, id, sizeof id) != 0) {
        printf("vxcli bob read chip ID reg fail\n");
        return PROBE_NEXT;
    }
    uint8_t kept = 0;
    if (bob_read_byte(BOB_A2, BOB_TABLE_SELECT, &kept) != 0) {
        printf("vxcli bob read table index fail\n");
        return PROBE_NEXT;
    }
    if (kept != table) {
        return PROBE_NEXT;
    }
    for (int32_t type = 0; type < BOB_UNKNOWN; type++) {
        const bob_identity_s &identity = bosaChips[type].identity;
        if (identity.signature != nullptr && identity.table == table &&
            strlen(identity.signature) == signature_length &&
            memcmp(identity.signature, id, signature_length) == 0) {
            return type;
        }
    }
    return PROBE_NEXT;
}

static int32_t probe_ux3320(int &failures) {
    switch (switch_for_probe(3, failures)) {
    case switch_result::again:
        return PROBE_AGAIN;
    case switch_result::failed:
        return give_up(nullptr);
    case switch_result::selected:
        break;
    }
    uint8_t marker = 0;
    if (bob_read_byte(BOB_A2, 0xD0, &marker) != 0) {
        return give_up("vxcli bob read_reg fail for UX3320");
    }
    uint8_t kept = 0;
    if (bob_read_byte(BOB_A2, BOB_TABLE_SELECT, &kept) != 0 || kept != 3 || marker != 0xA2) {
        return PROBE_NEXT;
    }
    char name[SIGNATURE_SIZE] = {};
    if (libvx_ponApi_i2cRead(BOB_BUS, BOB_A2, 0xF5, reinterpret_cast<uint8_t *>(name), sizeof name) != 0) {
        return give_up("vxcli bob read table index fail");
    }
    return memcmp(name, "UX3320S", sizeof name) == 0 ? BOB_UX3320S : BOB_UX3320;
}

// The last probe: no retry, and what it does not find is no known chip.
static int32_t probe_gn25l95() {
    if (bob_switch_table(2) != 0) {
        return give_up(nullptr);
    }
    uint8_t marker = 0;
    if (bob_read_byte(BOB_A2, 0xD1, &marker) != 0) {
        return give_up("vxcli bob read_reg fail for GN25L95");
    }
    uint8_t kept = 0;
    if (bob_read_byte(BOB_A2, BOB_TABLE_SELECT, &kept) != 0) {
        return give_up(nullptr);
    }
    if (kept == 2 && marker == 0xA3) {
        return BOB_GN25L95;
    }
    if (kept == 2 && marker == 0xA4) {
        return BOB_GN25L95D;
    }
    printf("bob:BOSA Chip Type: Unknown.\n");
    shell_echo_number(BOB_UNKNOWN, BOB_CHIP_TYPE_FILE);
    return PROBE_STOP;
}

static int32_t run_probes(int &failures) {
    struct signature_probe_s {
        uint8_t table;
        uint8_t length;
    };
    // Table 0xFF is probed twice: for the names of the GN28L97 family, then for the GN28L95's single byte.
    static constexpr signature_probe_s PROBES[] = {{0x87, SIGNATURE_SIZE}, {0xFF, SIGNATURE_SIZE}, {0xFF, 1}};
    for (const signature_probe_s probe : PROBES) {
        const int32_t found = probe_signature(probe.table, probe.length, failures);
        if (found != PROBE_NEXT) {
            return found;
        }
    }
    const int32_t found = probe_ux3320(failures);
    return found != PROBE_NEXT ? found : probe_gn25l95();
}

std::optional<int32_t> bob_identify() {
    int failures = 0;
    int32_t found = PROBE_AGAIN;
    while (found == PROBE_AGAIN) {
        found = run_probes(failures);
    }
    if (found < 0) {
        return std::nullopt;
    }
    printf("bob:BOSA Chip Type: %s.\n", bob_chip(found).name);
    shell_echo_number(found, BOB_CHIP_TYPE_FILE);
    return found;
}

std::optional<bool> bob_has_eeprom(int32_t chip_type) {
    const bob_eeprom_flag_s &flag = bob_chip(chip_type).eeprom;
    if (bob_switch_table(flag.table) != 0) {
        return std::nullopt;
    }
    uint8_t value = 0;
    if (bob_read_byte(BOB_A2, flag.reg, &value) != 0) {
        printf("%s\n", flag.read_failure);
        return std::nullopt;
    }
    return (value & flag.mask) == flag.with_eeprom;
}

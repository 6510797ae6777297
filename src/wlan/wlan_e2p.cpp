#include "wlan/wlan_e2p.h"

#include "wlan/wlan_cal.h"
#include "wlan/wlan_chip.h"
#include "wlan/wlan_slot.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <strings.h>

static constexpr char E2P_COMMAND[] = "e2p_in_flash";

// With its terminating NUL.
static constexpr size_t ADDRESS_WORD_SIZE = 32;

// The numbers that the support staff knows these two faults by.
static constexpr int FAULT_OPEN_DRIVER_FILE = 531;
static constexpr int FAULT_OPEN_SCRATCH_FILE = 543;

static int32_t internal_error(int fault) {
    printf("internal error %s:%d\n", E2P_COMMAND, fault);
    return -1;
}

// The low 16 bits of the hexadecimal number that the text begins with, 0 when it begins with none.
static uint16_t parse_hex(const char *text) {
    return static_cast<uint16_t>(strtoul(text, nullptr, 16));
}

// From the slot as it was just read back. Bytes behind its end read as 0.
static int32_t show_word(const chip_cal_info &slot, uint16_t address) {
    FILE *file = fopen(slot.temp_path, "rb");
    if (file == nullptr) {
        return internal_error(FAULT_OPEN_SCRATCH_FILE);
    }
    uint8_t bytes[2] = {};
    if (fseek(file, address, SEEK_SET) != 0 || fread(bytes, 1, sizeof bytes, file) != sizeof bytes) {
        // What is missing is 0 already.
    }
    fclose(file);
    printf("e2p in flash 0x%04X=0x%04X\n", address, bytes[0] | bytes[1] << 8);
    return 0;
}

// Into the driver's file, which then goes to flash as a whole. An address behind the end of the slot only makes the
// file longer: nothing compares the two.
static int32_t set_word(const chip_cal_info &slot, uint16_t address, uint16_t value) {
    FILE *file = fopen(slot.cur_path, "r+b");
    if (file == nullptr) {
        return internal_error(FAULT_OPEN_DRIVER_FILE);
    }
    const uint8_t bytes[] = {static_cast<uint8_t>(value), static_cast<uint8_t>(value >> 8)};
    if (fseek(file, address, SEEK_SET) == 0) {
        fwrite(bytes, 1, sizeof bytes, file);
    }
    fclose(file);
    if (write_cal_data(slot) != 0) {
        printf("save cali data to flash failed!\n");
        return -1;
    }
    printf("save e2p in flash 0x%04X=>0x%04X\n", address, value);
    return 0;
}

// The chip's data is validated first, which also puts it into the driver's file.
static int32_t show_or_set(const char *band_word, const char *address_word) {
    uint8_t band = 0;
    if (strcasecmp(band_word, "2g") == 0) {
        band = WLAN_BAND_2G;
    } else if (strcasecmp(band_word, "5g") == 0) {
        band = WLAN_BAND_5G;
    } else {
        printf("unknown band\n");
        return -1;
    }
    const chip_cal_info *slot = find_slot(get_cur_chip_name(band));
    if (slot == nullptr) {
        printf("unknown chip name!\n");
        return -1;
    }
    if (validate_cal_data(*slot) != 0) {
        printf("cali data in flash is invalidate!\n");
        return -1;
    }
    if (strlen(address_word) >= ADDRESS_WORD_SIZE) {
        printf("invalied input!\n");
        return -1;
    }
    const uint16_t address = parse_hex(address_word);
    const char *equals = strchr(address_word, '=');
    return equals == nullptr ? show_word(*slot, address) : set_word(*slot, address, parse_hex(equals + 1));
}

int32_t e2p_in_flash(int32_t argc, const char *const argv[], const char *) {
    if (argc == 3 && show_or_set(argv[1], argv[2]) == 0) {
        return 0;
    }
    printf("Usage: %s 2g|5g Addr[=Value] \n", E2P_COMMAND);
    return -1;
}

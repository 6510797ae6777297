#include "bob/bob_status.h"

#include "bob/bob_chip.h"
#include "common/shell.h"

#include <cstdio>
#include <cstdlib>

// Reads the number on the first line (7 characters at most) of the file at `path`; an empty file leaves
// *value as it was, anything but a number reads as 0. False when the file cannot be opened.
static bool read_status(const char *path, int32_t *value) {
    FILE *file = fopen(path, "r");
    if (file == nullptr) {
        return false;
    }
    char line[8];
    if (fgets(line, sizeof line, file) != nullptr) {
        *value = static_cast<int32_t>(strtol(line, nullptr, 10));
    }
    fclose(file);
    return true;
}

int32_t get_bob_chip_type(int32_t *chipType) {
    return read_status(BOB_CHIP_TYPE_FILE, chipType) ? 0 : -1;
}

int32_t get_bob_driver_status(int32_t *status) {
    if (!read_status(BOB_DRIVER_STATUS_FILE, status)) {
        *status = 0;
    }
    return 0;
}

int32_t get_bob_e2prom_status() {
    int32_t status = 0;
    read_status(BOB_E2PROM_STATUS_FILE, &status);
    return status;
}

int32_t set_bob_driver_status(int32_t status) {
    shell_echo_number(status, BOB_DRIVER_STATUS_FILE);
    return 0;
}

int32_t bob_require_chip(int32_t *chip_type) {
    *chip_type = 0;
    if (get_bob_chip_type(chip_type) != 0) {
        printf("Check bosa chip type fail!\n");
        return -1;
    }
    // A number beyond the chip list is as unusable as the unknown chip's.
    if (*chip_type < 0 || *chip_type >= BOB_UNKNOWN) {
        printf("bob:BOSA Chip Type: Unknown.\n");
        return -1;
    }
    return 0;
}

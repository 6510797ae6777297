#include "bob/bob_lifecycle.h"

#include "bob/bob_bus.h"
#include "bob/bob_checksum.h"
#include "bob/bob_chip.h"
#include "bob/bob_identify.h"
#include "bob/bob_image.h"
#include "bob/bob_status.h"
#include "bob/bob_textfile.h"
#include "bob/bob_transfer.h"
#include "common/elapsed.h"
#include "common/shell.h"
#include "libvx.h"

#include <algorithm>
#include <cstdio>
#include <optional>
#include <unistd.h>

static constexpr int INIT_ATTEMPTS = 3;

// Supply voltage in units of 100 microvolt: 3.1 V to 3.5 V.
static constexpr uint16_t VCC_MIN = 31000;
static constexpr uint16_t VCC_SPAN = 4000;

enum class image_source : uint8_t { working, backup, factory };

static void copy_image_to_backup() {
    shell_copy(BOB_IMAGE_FILE, BOB_BACKUP_FILE);
}

// The first source that yields an image that passes its check is in the chip's record afterwards.
static std::optional<image_source> load_image(const bob_chip_s &chip, int32_t chip_type) {
    struct source_s {
        image_source source;
        const char *path;
        int32_t (*read)(const char *path, int32_t chip_type);
    };
    const source_s sources[] = {
        {image_source::working, BOB_IMAGE_FILE, read_data_from_file},
        {image_source::backup, BOB_BACKUP_FILE, read_data_from_file},
        {image_source::factory, chip.default_file, read_data_from_default_file},
    };
    for (const source_s &row : sources) {
        if (row.read(row.path, chip_type) == 0) {
            printf("bob:read data from %s\n", row.path);
            return row.source;
        }
        printf("bob:read data from %s fail.\n", row.path);
    }
    return std::nullopt;
}

// A0 goes into the chip, or into the shadow file for the chips that cannot keep it.
static int32_t write_a0(const bob_chip_s &chip, int32_t chip_type) {
    if (chip.paging != bob_paging::gn) {
        return write_to_ux_a0(chip_type);
    }
    const auto a0 = bob_record(*chip.image).subspan(chip.image->a0, BOB_REGISTERS);
    return write_a0_to_file(0, a0.data(), static_cast<int32_t>(a0.size()));
}

// What is stored afterwards matches where the image came from.
static void persist_image(image_source source, int32_t chip_type) {
    if (source == image_source::working) {
        if (access(BOB_BACKUP_FILE, F_OK) != 0) {
            copy_image_to_backup();
        }
        return;
    }
    if (save_data_to_file(chip_type) != 0) {
        return;
    }
    if (source == image_source::factory) {
        copy_image_to_backup();
    }
    libvx_sys_saveBob();
}

static int32_t load_calibration(int32_t chip_type) {
    const bob_chip_s &chip = bob_chip(chip_type);
    shell_echo_number(0, BOB_E2PROM_STATUS_FILE);
    libvx_sys_getBob();
    const std::optional<image_source> source = load_image(chip, chip_type);
    if (!source) {
        set_bob_driver_status(0);
        return -1;
    }
    int32_t result = write_a0(chip, chip_type);
    result |= write_to_ux_a2(chip_type);
    if (result != 0) {
        printf("bob:write data to %s fail.\n", chip.name);
    }
    set_bob_driver_status(result == 0 ? 1 : 0);
    persist_image(*source, chip_type);
    return 0;
}

int32_t bob_initialize() {
    const std::optional<int32_t> chip_type = bob_identify();
    if (!chip_type) {
        return -1;
    }
    const std::optional<bool> has_eeprom = bob_has_eeprom(*chip_type);
    if (!has_eeprom) {
        printf("bob:read regs fail.\n");
        set_bob_driver_status(0);
        return -1;
    }
    if (*has_eeprom) {
        printf("bob:init from EEPROM.\n");
        set_bob_driver_status(1);
        shell_echo_number(1, BOB_E2PROM_STATUS_FILE);
        return 0;
    }
    return load_calibration(*chip_type);
}

// Whether the transceiver runs at a sane supply voltage. Prints a line when it does not.
static bool supply_is_normal() {
    libvx_pon_ctcOptDiag_t diag = {};
    if (libvx_ponApi_eponGetOptDiag(&diag) != 0) {
        printf("warning!!! libvx_ponApi_eponGetOptDiag failed, reinit again!!!\n");
        return false;
    }
    if (static_cast<uint16_t>(diag.vcc - VCC_MIN) > VCC_SPAN) {
        printf("PON Voltage abnormal: %d\n", int{diag.vcc});
        return false;
    }
    return true;
}

// A voltage that never comes into range does not make the command fail: the link may work all the same.
int32_t bob_init(int32_t, const char *const[], const char *) {
    int32_t result = -1;
    for (int attempt = 0; attempt < INIT_ATTEMPTS; attempt++) {
        result = bob_initialize();
        sleep(1);
        if (result != 0) {
            printf("warning!!! bob_initialize failed, reinit again!!!\n");
        } else if (supply_is_normal()) {
            break;
        }
    }
    return result;
}

// Fills the record from the chip and checks it. 0, or the failing step's result after a message.
static int32_t read_back(const bob_chip_s &chip, int32_t chip_type) {
    const std::span<uint8_t> record = bob_record(*chip.image);
    std::ranges::fill(record, uint8_t{0});
    int32_t result = 0;
    if (chip.paging == bob_paging::gn) {
        result = read_a0_from_file(0, record.data() + chip.image->a0, BOB_REGISTERS);
    } else {
        result = read_from_ux_a0(chip_type);
    }
    result |= read_from_ux_a2(chip_type);
    if (result != 0) {
        printf("read data from %s fail.\n", chip.save_name);
        return result;
    }
    result = bob_check_image(chip_type);
    if (result != 0) {
        printf("%s data not correct.\n", chip.save_name);
    }
    return result;
}

int32_t bob_save(int32_t, const char *const[], const char *) {
    if (get_bob_e2prom_status() == 1) {
        printf("No need to save if eeprom exists!\n");
        return 0;
    }
    int32_t chip_type = 0;
    if (bob_require_chip(&chip_type) != 0) {
        return -1;
    }
    const bob_chip_s &chip = bob_chip(chip_type);
    if (chip.image != nullptr) {
        const int32_t result = read_back(chip, chip_type);
        if (result != 0) {
            return result;
        }
    }
    const timeval start = elapsed_start();
    if (save_data_to_file(chip_type) == 0) {
        copy_image_to_backup();
    }
    libvx_sys_saveBob();
    const double duration = elapsed_seconds(start);
    printf("Bob chip_type: %s\n", chip.name);
    printf("vxcli bob write_all_datas_to_flash duration: %.6f\n", duration);
    return 0;
}

int32_t bob_restore(int32_t, const char *const[], const char *) {
    if (get_bob_e2prom_status() == 1) {
        printf("No need to restore if eeprom exists!\n");
        return 0;
    }
    int32_t chip_type = 0;
    if (bob_require_chip(&chip_type) != 0) {
        return -1;
    }
    const bob_chip_s &chip = bob_chip(chip_type);
    if (chip.image != nullptr) {
        if (read_data_from_default_file(chip.default_file, chip_type) != 0) {
            printf("bob:read data from %s fail.\n", chip.default_file);
            return -1;
        }
        printf("bob:read data from %s SUCCESS\n", chip.default_file);
    }
    if (save_data_to_file(chip_type) == 0) {
        copy_image_to_backup();
    }
    libvx_sys_saveBob();
    if (chip.image == nullptr) {
        return 0; // the image files are empty now: such a chip has no calibration
    }
    int32_t result = write_a0(chip, chip_type);
    const bob_transient_reg_s &transient = chip.image->transient;
    if (transient.table != 0) {
        const int32_t selected = bob_select_table(transient.table);
        result |= selected != 0 ? selected : bob_write_byte(BOB_A2, transient.reg, 0);
    }
    result |= write_to_ux_a2(chip_type);
    if (result != 0) {
        printf("bob:write data to %s fail.\n", chip.name);
        return -1;
    }
    return 0;
}

int32_t bob_read(int32_t, const char *const[], const char *) {
    libvx_sys_getBob();
    return 0;
}

#include "image.h"

#include "factory.h"

#include <algorithm>
#include <cstring>

// ---- the identification page A0 (SFF-8472 byte numbers) ----

static uint8_t sum_of(const uint8_t *bytes, size_t count) {
    uint8_t sum = 0;
    for (size_t i = 0; i < count; i++) {
        sum = static_cast<uint8_t>(sum + bytes[i]);
    }
    return sum;
}

// Puts a text into a field of `size` bytes, padded with blanks.
static void put_text(uint8_t *field, size_t size, const char *text) {
    for (size_t i = 0; i < size; i++) {
        field[i] = static_cast<uint8_t>(*text == '\0' ? ' ' : *text++);
    }
}

static void put_word(uint8_t *field, int value) {
    field[0] = static_cast<uint8_t>(value >> 8);
    field[1] = static_cast<uint8_t>(value);
}

// A setting that follows no curve: spread over all values, none of them 0, the same in every build.
static uint8_t setting(chip_page page, size_t i) {
    uint32_t mixed = (page * 131U + static_cast<uint32_t>(i) * 29U + 17U) * 2654435761U;
    return static_cast<uint8_t>(1 + (mixed >> 16) % 255);
}

static void fill_a0(const chip_model &chip, const factory_row &row, uint8_t *a0, size_t registers) {
    char text[24];
    memset(a0, 0, 256);
    a0[0] = 0x02;  // identifier: soldered to the board
    a0[1] = 0x04;  // two-wire interface
    a0[2] = 0x01;  // connector: SC
    a0[11] = 0x03; // encoding: NRZ
    a0[12] = row.bit_rate;
    a0[14] = 20;  // reach on single-mode fibre, km
    a0[15] = 200; // the same in 100 m
    put_text(a0 + 20, 16, "VIRTUAL OPTICS");
    snprintf(text, sizeof text, "VO-%s", chip.name);
    put_text(a0 + 40, 16, text);
    put_text(a0 + 56, 4, "1.0");
    put_word(a0 + 60, row.wavelength);
    a0[63] = sum_of(a0, 63);
    a0[65] = 0x1A; // loss of signal, transmitter fault and disable are there
    // The serial number: one for every chip.
    snprintf(text, sizeof text, "VO24%08u",
             sum_of(reinterpret_cast<const uint8_t *>(chip.name), strlen(chip.name)));
    put_text(a0 + 68, 16, text);
    put_text(a0 + 84, 8, "240611");
    a0[92] = 0x68; // diagnostics: internally calibrated, average power
    a0[93] = 0xF0; // alarms, soft disable, fault and loss of signal
    a0[94] = 0x08; // revision of the map
    a0[95] = sum_of(a0 + 64, 31);
    put_text(a0 + 96, 32, "VIRTUAL UNIT TRANSCEIVER");
    for (size_t i = 128; i < registers; i++) {
        a0[i] = setting(chip_page_a0, i);
    }
}

// ---- the diagnostics page, lower half of A2 ----

// What the chip measures: 35 degrees, 3.3 V, 12 mA of bias, +2 dBm sent, -18 dBm received; and its status.
static void fill_live(uint8_t *a2) {
    static constexpr int live[] = {35 * 256, 33000, 6000, 15849, 158};
    for (size_t i = 0; i < std::size(live); i++) {
        put_word(a2 + chip_live_first + 2 * i, live[i]);
    }
    a2[110] = 0x08; // rate select: high
}

static void fill_a2(uint8_t *a2) {
    // High alarm, low alarm, high warning, low warning of each.
    static constexpr int thresholds[] = {
        90 * 256, -45 * 256, 85 * 256, -40 * 256, // temperature, 1/256 degree
        36000,    30000,     35000,    31000,     // supply, 100 uV
        45000,    500,       40000,    1000,      // bias, 2 uA
        39811,    7943,      31623,    10000,     // power sent, 0.1 uW: +6, -1, +5, 0 dBm
        2512,     10,        1995,     16,        // power received: -6, -30, -7, -28 dBm
    };
    for (size_t i = 0; i < std::size(thresholds); i++) {
        put_word(a2 + 2 * i, thresholds[i]);
    }
    // Calibration constants of an internally calibrated part: all slopes 1, all offsets 0.
    put_word(a2 + 68, 0x3F80);
    for (int slope : {76, 80, 84, 88}) {
        put_word(a2 + slope, 0x0100);
    }
    a2[95] = sum_of(a2, 95);
    fill_live(a2);
}

// ---- the tables ----

static void fill_section(const factory_section &section, uint8_t *page) {
    const factory_curve &curve = section.curve;
    const bool follows_curve = curve.from != 0 || curve.to != 0;
    const int last = section.filled - 1;
    for (int i = 0; i <= last; i++) {
        int rise = (curve.to - curve.from) * i / last;
        int sag = 4 * curve.bend * i * (last - i) / (last * last);
        int value = std::clamp(curve.from + rise - sag, 1, 255);
        page[i] = follows_curve ? static_cast<uint8_t>(value) : setting(section.page, static_cast<size_t>(i));
    }
}

// What the chip itself puts into its registers.
static void fill_own(const chip_model &chip, bool eeprom, chip_image *image) {
    const chip_eeprom_flag &flag = chip.eeprom_flag;
    image->at(flag.table, flag.reg) = eeprom ? flag.with : flag.without;
    for (const chip_identity &run : chip.identity) {
        for (size_t i = 0; i < run.bytes.size(); i++) {
            image->at(run.table, static_cast<uint8_t>(run.first + i)) = static_cast<uint8_t>(run.bytes[i]);
        }
    }
}

static void seal(const factory_row &row, chip_image *image) {
    for (const factory_byte &bit : row.bits) {
        image->at(bit.table, bit.reg) |= bit.value;
    }
    for (const factory_byte &marker : row.markers) {
        image->at(marker.table, marker.reg) = marker.value;
    }
    uint8_t sum = 0;
    for (const factory_range &range : row.summed) {
        sum = static_cast<uint8_t>(
            sum + sum_of(&image->at(range.table, range.first), range.last + size_t{1} - range.first));
    }
    if (row.sum.table != 0) {
        image->at(row.sum.table, row.sum.reg) = sum;
    }
}

void image_reset(const chip_model &chip, bool eeprom, chip_image *image) {
    *image = {};
    fill_own(chip, eeprom, image);
    fill_live(image->a2_low);
}

void image_calibrated(const chip_model &chip, bool eeprom, chip_image *image) {
    const factory_row &row = factory_row_of(chip);
    *image = {};
    for (const factory_section &section : row.sections) {
        if (section.page == chip_page_a0) {
            fill_a0(chip, row, image->a0, section.filled);
        } else if (section.page == chip_page_a2_low) {
            fill_a2(image->a2_low);
        } else {
            fill_section(section, image->page(section.page));
        }
    }
    fill_own(chip, eeprom, image);
    seal(row, image);
}

const char *factory_file_name(const chip_model &chip) {
    return factory_row_of(chip).file;
}

void factory_file_print(const chip_model &chip, chip_image *image, FILE *file) {
    for (const factory_section &section : factory_row_of(chip).sections) {
        bool table = section.page < chip_page_a2_low;
        fprintf(file, "%s\n", section.keyword);
        for (unsigned i = 0; i < section.registers; i++) {
            unsigned reg = table ? chip_table_base + i : i;
            fprintf(file, "0x%02X=0x%02X;\n", reg, image->page(section.page)[i]);
        }
    }
}

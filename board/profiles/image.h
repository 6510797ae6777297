// A calibrated transceiver's registers, and the same as the factory writes them into a text file.
#ifndef IMAGE_H
#define IMAGE_H

#include "../chip_models.h"

#include <cstdint>
#include <cstdio>

// All registers that a chip could have; tables by their number.
struct chip_image {
    uint8_t a0[256];
    uint8_t a2_low[128];
    uint8_t table[256][128];

    uint8_t *page(chip_page number) {
        return number == chip_page_a0 ? a0 : number == chip_page_a2_low ? a2_low : table[number];
    }
    // A register of a table by its own number, 0x80 to 0xFF.
    uint8_t &at(uint8_t number, uint8_t reg) { return table[number][reg - chip_table_base]; }
};

// What the registers hold after power-up of a chip that nothing was loaded into.
void image_reset(const chip_model &chip, bool eeprom, chip_image *image);

// What they hold once the chip is calibrated: in its EEPROM, or loaded from the factory's file.
void image_calibrated(const chip_model &chip, bool eeprom, chip_image *image);

// The factory's text file of a chip: its path below /etc, and its contents.
const char *factory_file_name(const chip_model &chip);
void factory_file_print(const chip_model &chip, chip_image *image, FILE *file);

#endif

// Makes the profiles of the virtual units: vxprofiles OUTDIR. For every chip there is OUTDIR/<chip> without and
// OUTDIR/<chip>-eeprom with an EEPROM, each a whole board directory.

#include "image.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <span>
#include <sys/stat.h>
#include <unistd.h>

static constexpr size_t bob_partition_size = 16384;

[[noreturn]] static void fail(const char *name) {
    fprintf(stderr, "vxprofiles: %s: %s\n", name, strerror(errno));
    exit(1);
}

// Enters a directory, making it if it is not there. All that follows is relative to it.
static void enter(const char *name, mode_t mode = 0755) {
    if ((mkdir(name, mode) != 0 && errno != EEXIST) || chmod(name, mode) != 0 || chdir(name) != 0) {
        fail(name);
    }
}

static void leave() {
    if (chdir("..") != 0) {
        fail("..");
    }
}

static void make_empty(const char *name, mode_t mode = 0755) {
    enter(name, mode);
    leave();
}

static FILE *create(const char *name) {
    FILE *file = fopen(name, "w");
    if (file == nullptr || fchmod(fileno(file), 0644) != 0) {
        fail(name);
    }
    return file;
}

static void finish(FILE *file, const char *name) {
    bool bad = ferror(file) != 0;
    if (fclose(file) != 0 || bad) {
        fail(name);
    }
}

static void write_bytes(const char *name, const uint8_t *bytes, size_t size) {
    FILE *file = create(name);
    fwrite(bytes, 1, size, file);
    finish(file, name);
}

static void write_text(const char *name, const char *text) {
    write_bytes(name, reinterpret_cast<const uint8_t *>(text), strlen(text));
}

static void write_pages(const chip_model &chip, chip_image *image) {
    auto write_page = [image](chip_page page) {
        write_bytes(chip_page_file(page).text, image->page(page), chip_page_size(page));
    };
    write_page(chip_page_a0);
    write_page(chip_page_a2_low);
    for (uint8_t table : chip.tables) {
        write_page(table);
    }
}

static void make_unit(const chip_model &chip) {
    enter("unit");
    make_empty("var");
    make_empty("tmp", 01777);
    enter("userconfig");
    make_empty("config");
    leave();

    enter("etc");
    write_text("passwd", "root:x:0:0:root:/:/bin/sh\nuser:x:1000:1000:user:/tmp:/bin/sh\n");
    write_text("group", "root:x:0:\nuser:x:1000:\n");
    static chip_image image;
    image_calibrated(chip, false, &image);
    const char *name = factory_file_name(chip);
    FILE *file = create(name);
    factory_file_print(chip, &image, file);
    finish(file, name);
    leave();
    leave();
}

static void make_transceiver(const chip_model &chip, bool eeprom) {
    static chip_image image;
    char name[16];
    enter("i2c");
    enter("1");
    snprintf(name, sizeof name, "%s\n", chip.name);
    write_text("chip", name);
    write_text("eeprom", eeprom ? "1\n" : "0\n");
    write_text("table", "0\n");

    image_reset(chip, eeprom, &image);
    enter("reset");
    write_pages(chip, &image);
    leave();
    if (eeprom) {
        image_calibrated(chip, true, &image);
    }
    write_pages(chip, &image);
    leave();
    leave();
}

// An attribute of a new board, in a directory below the board's.
struct attribute {
    const char *name;
    const char *text;
};

static constexpr attribute catv_attributes[] = {
    {"optPwr", "-35\n"}, {"outLvl", "78\n"}, {"temp", "41\n"}, {"rfSwitch", "1\n"}, {"outAtte", "3\n"}};
static constexpr attribute serdes_attributes[] = {{"mode", "0\n"}, {"bist", "0\n"},    {"ready", "1\n"},
                                                  {"ber", "0\n"},  {"counter", "0\n"}, {"counting", "\n"}};

static void make_attributes(const char *directory, std::span<const attribute> attributes) {
    enter(directory);
    for (const attribute &entry : attributes) {
        write_text(entry.name, entry.text);
    }
    leave();
}

static void make_flash() {
    static uint8_t erased[bob_partition_size];
    memset(erased, 0xFF, sizeof erased);
    enter("flash");
    write_bytes("bob", erased, sizeof erased);
    leave();
}

static void make_profile(const chip_model &chip, bool eeprom) {
    char name[32];
    snprintf(name, sizeof name, "%s%s", chip.name, eeprom ? "-eeprom" : "");
    for (char *c = name; *c != '\0'; c++) {
        *c = *c >= 'A' && *c <= 'Z' ? static_cast<char>(*c - 'A' + 'a') : *c;
    }
    enter(name);
    make_unit(chip);
    make_transceiver(chip, eeprom);
    make_flash();
    make_attributes("serdes", serdes_attributes);
    enter("optics");
    make_attributes("catv", catv_attributes);
    leave();
    leave();
}

int main(int argc, char *argv[]) {
    if (argc != 2) {
        fprintf(stderr, "usage: vxprofiles OUTDIR\n");
        return 1;
    }
    enter(argv[1]);
    for (const chip_model &chip : chip_models()) {
        make_profile(chip, false);
        make_profile(chip, true);
    }
    return 0;
}

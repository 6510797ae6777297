// Makes the profiles of the virtual units: vxprofiles OUTDIR. For every chip there is a home gateway, OUTDIR/<chip>
// without and OUTDIR/<chip>-eeprom with an EEPROM; OUTDIR/sfu-gn25l95 is a single-family unit; OUTDIR/ux3361-<Wi-Fi
// chips> are fitted with these. Each is a whole board directory.

#include "../board_dir.h"
#include "../flash_store.h"
#include "../sysinfo_store.h"
#include "factory.h"
#include "image.h"
#include "unit.h"
#include "wifi.h"

#include "libvx.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <span>
#include <sys/stat.h>
#include <unistd.h>

// What a profile is made of.
struct profile {
    const chip_model &chip;
    bool eeprom;
    const unit_kind &kind;
    const wifi_set &wifi;
};

static bool is_ten_gigabit(const chip_model &chip) {
    return factory_row_of(chip).bit_rate >= 100;
}

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

static void print_sysinfo(const profile &made, bool individual, FILE *file) {
    unit_print_sysinfo(made.kind, is_ten_gigabit(made.chip) ? "XGSPON" : "GPON", individual, file);
}

static void make_unit(const profile &made) {
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
    image_calibrated(made.chip, false, &image);
    const char *name = factory_file_name(made.chip);
    FILE *file = create(name);
    factory_file_print(made.chip, &image, file);
    finish(file, name);
    file = create("default_sys_info");
    print_sysinfo(made, false, file);
    finish(file, "default_sys_info");
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

static constexpr attribute led_attributes[] = {
    {"brightness", "0\n"}, {"trigger", "none\n"}, {"delay_on", "0\n"}, {"delay_off", "0\n"}};

static void make_leds(const unit_kind &kind) {
    enter("led");
    for (const char *led : kind.leds) {
        make_attributes(led, led_attributes);
    }
    leave();
}

// A GPON unit in operation; nothing is on the EPON side.
static void make_pon(const profile &made) {
    const attribute attributes[] = {{"mode", is_ten_gigabit(made.chip) ? "3\n" : "1\n"},
                                    {"queues", "8\n"},
                                    {"rogue_detect", "0\n"},
                                    {"rogue_shutdown", "0\n"},
                                    {"rogue_found", "0\n"}};
    const attribute epon[] = {{"llids", "8\n"}, {"tx", "1\n"},   {"rx", "1\n"},       {"rogue", "0\n"},
                              {"los", "0\n"},   {"link", "0\n"}, {"fec_mode", "0\n"}, {"fec", "0\n"}};
    const attribute gpon[] = {{"tconts", made.kind.tconts},
                              {"tx", "1\n"},
                              {"rx", "1\n"},
                              {"rogue", "0\n"},
                              {"los", "0\n"},
                              {"state", "5\n"},
                              {"fec", "1\n"}};
    make_attributes("pon", attributes);
    enter("pon");
    make_attributes("epon", epon);
    make_attributes("gpon", gpon);
    leave();
}

// A computer is on the first port; the PON and the CPU are always up.
static void make_switch(const unit_kind &kind) {
    const attribute counts[] = {{"ports", kind.eth_ports}, {"mac_table_size", kind.mac_table_size}};
    make_attributes("switch", counts);
    enter("switch");
    make_empty("proto");
    for (const char *port : kind.ports) {
        const bool lan = strlen(port) == strlen("portN");
        const char *link = !lan ? "1 4 2\n" : port == kind.ports[0] ? "1 3 2\n" : "0 0 0\n";
        const attribute attributes[] = {{"admin", "1\n"}, {"traffic_en", "1\n"}, {"link", link}};
        make_attributes(port, attributes);
    }
    leave();
}

static constexpr attribute voice_attributes[] = {{"log_level", "1\n"}, {"log_file", "\n"}};
static constexpr attribute line_attributes[] = {{"registered", "1\n"}, {"ringing", "0\n"},  {"in_test", "0\n"},
                                                {"dialled", "\n"},     {"refreshed", "\n"}, {"reported", "\n"}};

static void make_voice(const unit_kind &kind) {
    make_attributes("voice", voice_attributes);
    enter("voice");
    for (const char *line : kind.phone_lines) {
        make_attributes(line, line_attributes);
    }
    leave();
}

// Nothing is redirected, and nothing was written to it.
static constexpr attribute console_attributes[] = {{"redirect", "\n"}, {"output", ""}};

static constexpr attribute sys_attributes[] = {{"fw_version", "V5.2.1R3\n"},
                                               {"boot_version", "V2.0.4\n"},
                                               {"main_image", "image0\n"},
                                               {"button_test", "0\n"},
                                               {"nat_flushes", "0\n"}};

// The drivers that the firmware loads, whatever Wi-Fi chips are fitted. A single-family unit has none.
static constexpr attribute module_attributes[] = {{"mt7916_ap", "1\n"}};

// Registers, LED configurations and parameters appear when they are set.
static void make_platform(const unit_kind &kind) {
    make_empty("mem");
    make_empty("led_config");
    make_empty("params");
    make_attributes("modules", std::span(module_attributes).first(&kind == &home_gateway ? 1 : 0));
}

struct partition_row {
    const char *name;
    uint32_t size;   // in bytes
    uint8_t content; // of every byte: 0xFF is erased, anything else stands for a firmware image
};

static constexpr partition_row partitions[] = {
    {"bob", 16384, 0xFF},     {"sysinfo", sysinfo_partition_size, 0xFF},
    {"backup", 131072, 0xFF}, {"preconf", 65536, 0xFF},
    {"image0", 65536, 0x5A},  {"image1", 65536, 0x5A},
};

// The unit's own information is in flash from the start.
static void store_sysinfo(const profile &made) {
    static char text[4096];
    FILE *file = fmemopen(text, sizeof text, "w");
    if (file == nullptr) {
        fail("sysinfo");
    }
    print_sysinfo(made, true, file);
    finish(file, "sysinfo");
    const std::span contents(reinterpret_cast<const uint8_t *>(text), strlen(text));
    const board_fd board(open(".", O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (flash_store_write(board.fd, sysinfo_flash, contents) != LIBVX_RET_OK) {
        fail("sysinfo");
    }
}

// Goes down a path's directories, making them. Returns how many they were; *name is the rest of the path.
static int enter_directories(const char *path, const char **name) {
    int depth = 0;
    for (const char *slash = nullptr; (slash = strchr(path, '/')) != nullptr; path = slash + 1) {
        char directory[32];
        snprintf(directory, sizeof directory, "%.*s", static_cast<int>(slash - path), path);
        enter(directory);
        depth++;
    }
    *name = path;
    return depth;
}

static void make_wifi(const wifi_set &wifi) {
    static uint8_t partition[wifi_partition_size];
    wifi_fill_partition(wifi, partition);
    enter("flash");
    write_bytes("hwconfig", partition, sizeof partition);
    leave();

    enter("unit");
    enter("lib"); // also without a driver that loads something from there
    make_empty("firmware");
    leave();
    const char *name = nullptr;
    for (const wifi_chip *chip : wifi.chips) {
        const int depth = enter_directories(chip->file, &name);
        write_bytes(name, partition + chip->slot, chip->size);
        for (int i = 0; i < depth; i++) {
            leave();
        }
    }
    const int depth = enter_directories("proc/bus/pci/devices", &name);
    FILE *file = create(name);
    wifi_print_pci_devices(wifi, file);
    finish(file, name);
    for (int i = 0; i < depth; i++) {
        leave();
    }
    leave();
}

static void make_flash(const profile &made) {
    enter("flash");
    for (const partition_row &row : partitions) {
        static uint8_t content[131072];
        memset(content, row.content, row.size);
        write_bytes(row.name, content, row.size);
    }
    leave();
    store_sysinfo(made);
}

static void make_profile(const profile &made) {
    char name[48];
    snprintf(name, sizeof name, "%s%s%s%s", made.kind.prefix, made.chip.name, made.eeprom ? "-eeprom" : "",
             made.wifi.suffix);
    for (char *c = name; *c != '\0'; c++) {
        *c = *c >= 'A' && *c <= 'Z' ? static_cast<char>(*c - 'A' + 'a') : *c;
    }
    enter(name);
    make_unit(made);
    make_transceiver(made.chip, made.eeprom);
    make_flash(made);
    make_wifi(made.wifi);
    make_leds(made.kind);
    make_pon(made);
    make_switch(made.kind);
    make_voice(made.kind);
    make_attributes("console", console_attributes);
    make_attributes("sys", sys_attributes);
    make_platform(made.kind);
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
    const wifi_set &no_wifi = wifi_sets()[0];
    for (const chip_model &chip : chip_models()) {
        make_profile({chip, false, home_gateway, no_wifi});
        make_profile({chip, true, home_gateway, no_wifi});
        if (strcmp(chip.name, "GN25L95") == 0) {
            make_profile({chip, false, single_family_unit, no_wifi});
        }
        if (strcmp(chip.name, "UX3361") == 0) {
            for (const wifi_set &wifi : wifi_sets().subspan(1)) {
                make_profile({chip, false, home_gateway, wifi});
            }
        }
    }
    return 0;
}

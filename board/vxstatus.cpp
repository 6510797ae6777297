// Shows a board on one screen: vxstatus BOARD. "vxboard status" runs it.

#include "board_dir.h"
#include "escaped.h"
#include "status_flash.h"
#include "status_read.h"
#include "status_row.h"
#include "text_front.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

static char file_bytes[1 << 16];

// ---- the transceiver ----

struct board_clock {
    uint64_t base; // in nanoseconds
    uint64_t slept;
};

static bool read_clock(int board, board_clock *clock) {
    char bytes[sizeof *clock];
    if (read_bytes(board, "clock", bytes) != static_cast<ptrdiff_t>(sizeof bytes)) {
        return false;
    }
    memcpy(clock, bytes, sizeof bytes);
    return clock->base != 0;
}

// Whether a write is under way, by the later of the two clocks, in a word.
static const char *write_state(int board, const char *bus) {
    const shown_attribute busy = read_attribute(board, bus, "busy");
    board_clock clock = {};
    const uint64_t virtual_now = read_clock(board, &clock) ? (clock.base + clock.slept) / 1'000'000'000 : 0;
    const uint64_t now = std::max(virtual_now, static_cast<uint64_t>(time(nullptr)));
    if (strcmp(busy.text, "damaged") == 0) {
        return "busy damaged";
    }
    return busy.ok && strtoull(busy.text, nullptr, 10) > now ? "writing" : "ready";
}

static void show_table(status_row *row, const shown_attribute &table) {
    uint32_t number = 0;
    if (to_numbers(table, {&number, 1}) && number <= 0xFF) {
        add_item(row, "table 0x%02x selected", number);
    } else {
        add_item(row, "table %s", table.ok ? "damaged" : table.text);
    }
}

static void show_buses(int board) {
    static constexpr const char *eeprom_words[] = {"no EEPROM", "EEPROM"};
    const name_list buses = list_names(board, "i2c");
    for (size_t i = 0; i < buses.count; i++) {
        char path[64];
        char target[128];
        snprintf(path, sizeof path, "i2c/%s", buses.names[i]);
        status_row row = begin_row(path);
        if (read_link(board, path, target)) {
            add_item(&row, "real hardware: %s", target);
        } else {
            const shown_attribute eeprom = read_attribute(board, path, "eeprom");
            add_item(&row, "%s", read_attribute(board, path, "chip").text);
            add_item(&row, eeprom.ok ? "%s" : "EEPROM %s", word_of(eeprom, eeprom_words));
            show_table(&row, read_attribute(board, path, "table"));
            add_item(&row, "%s", write_state(board, path));
        }
        end_row(&row);
    }
    if (buses.count == 0) {
        status_row row = begin_row("i2c");
        end_row(&row, buses.damaged ? "damaged" : "no bus");
    }
}

static void show_driver(int board) {
    static constexpr const char *status_words[] = {"driver stopped", "driver running"};
    static constexpr const char *eeprom_words[] = {"calibration loaded from a file", "calibration in its EEPROM"};
    status_row row = begin_row("bob");
    const shown_attribute type = read_attribute(board, "unit/var/bob_chip_type");
    const shown_attribute driver = read_attribute(board, "unit/var/bob_driver_status");
    if (!type.ok && !driver.ok && type.text[0] == '?' && driver.text[0] == '?') {
        end_row(&row, "not initialised since the last power cycle");
        return;
    }
    add_item(&row, "chip type %s", type.text);
    add_item(&row, driver.ok ? "%s" : "driver %s", word_of(driver, status_words));
    const shown_attribute eeprom = read_attribute(board, "unit/var/bob_e2prom_status");
    add_item(&row, eeprom.ok ? "%s" : "calibration %s", word_of(eeprom, eeprom_words));
    end_row(&row);
}

// ---- PON, ports ----

static constexpr const char *off_on[] = {"off", "on"};

static void show_pon(int board) {
    static constexpr const char *modes[] = {"EPON", "GPON", "XGPON", "XGSPON", "XEPON", "XESPON", "ETHER", "AUTO"};
    static constexpr const char *los_words[] = {"signal", "no signal"};
    static constexpr const char *detect_words[] = {"rogue detection off", "rogue detection on"};
    const shown_attribute mode = read_attribute(board, "pon/mode");
    const shown_attribute detect = read_attribute(board, "pon/rogue_detect");
    status_row row = begin_row("pon");
    add_item(&row, "mode %s", word_of(mode, modes));
    add_item(&row, detect.ok ? "%s" : "rogue detection %s", word_of(detect, detect_words));
    add_item(&row, "%s queues", read_attribute(board, "pon/queues").text);
    end_row(&row);
    for (const bool gpon : {true, false}) {
        const char *link = gpon ? "pon/gpon" : "pon/epon";
        const shown_attribute los = read_attribute(board, link, "los");
        row = begin_row(gpon ? "gpon" : "epon");
        add_item(&row, gpon ? "state %s" : "link %s", read_attribute(board, link, gpon ? "state" : "link").text);
        add_item(&row, los.ok ? "%s" : "signal %s", word_of(los, los_words));
        add_item(&row, "transmitter %s", word_of(read_attribute(board, link, "tx"), off_on));
        add_item(&row, "receiver %s", word_of(read_attribute(board, link, "rx"), off_on));
        add_item(&row, "%s %s", read_attribute(board, link, gpon ? "tconts" : "llids").text,
                 gpon ? "T-CONTs" : "LLIDs");
        end_row(&row);
    }
}

// Adds the port in switch/`directory`: portN.
static void show_port(int board, const char *directory, status_row *row) {
    static constexpr const char *speeds[] = {"0", "10M", "100M", "1000M", "2500M"};
    const char *number = directory + 4;
    const char *name = strcmp(number, "5") == 0    ? "10G"
                       : strcmp(number, "14") == 0 ? "PON"
                       : strcmp(number, "15") == 0 ? "CPU"
                                                   : number;
    char path[64];
    snprintf(path, sizeof path, "switch/%s", directory);
    const shown_attribute admin = read_attribute(board, path, "admin");
    const shown_attribute link = read_attribute(board, path, "link");
    uint32_t state[3] = {}; // up, speed, duplex
    if (!admin.ok || strcmp(admin.text, "1") != 0) {
        add_item(row, "%s %s", name, word_of(admin, off_on));
    } else if (!to_numbers(link, state)) {
        add_item(row, "%s %s", name, link.ok ? "damaged" : link.text);
    } else if (state[0] == 0) {
        add_item(row, "%s down", name);
    } else {
        add_item(row, "%s up %s%s", name, state[1] < std::size(speeds) ? speeds[state[1]] : "?",
                 state[2] == 1 ? " half" : "");
    }
}

static void show_ports(int board) {
    const name_list names = list_names(board, "switch");
    status_row row = begin_row("ports");
    for (size_t i = 0; i < names.count; i++) {
        const char *name = names.names[i];
        if (strncmp(name, "port", 4) == 0 && name[4] >= '0' && name[4] <= '9') {
            show_port(board, name, &row);
        }
    }
    end_row(&row, names.damaged ? "damaged" : "?");
}

// ---- panel, telephones, Wi-Fi ----

static void show_leds(int board) {
    const name_list names = list_names(board, "led");
    status_row row = begin_row("LEDs");
    unsigned dark = 0;
    for (size_t i = 0; i < names.count; i++) {
        char path[64];
        snprintf(path, sizeof path, "led/%s", names.names[i]);
        const shown_attribute brightness = read_attribute(board, path, "brightness");
        const shown_attribute trigger = read_attribute(board, path, "trigger");
        if (trigger.ok && strcmp(trigger.text, "timer") == 0) {
            add_item(&row, "%s blinking (%s/%s ms)", names.names[i], read_attribute(board, path, "delay_on").text,
                     read_attribute(board, path, "delay_off").text);
        } else if (!trigger.ok || !brightness.ok) {
            add_item(&row, "%s %s", names.names[i], trigger.ok ? brightness.text : trigger.text);
        } else if (strcmp(brightness.text, "0") != 0) {
            add_item(&row, "%s lit", names.names[i]);
        } else {
            dark++;
        }
    }
    if (dark > 0) {
        add_item(&row, row.empty ? "all %u dark" : "%u dark", dark);
    }
    end_row(&row, names.damaged ? "damaged" : "?");
}

static void show_phones(int board) {
    static constexpr const char *registered_words[] = {"not registered", "registered"};
    const name_list names = list_names(board, "voice");
    status_row row = begin_row("phones");
    for (size_t i = 0; i < names.count; i++) {
        if (strncmp(names.names[i], "line", 4) != 0) {
            continue;
        }
        char path[64];
        snprintf(path, sizeof path, "voice/%s", names.names[i]);
        const shown_attribute ringing = read_attribute(board, path, "ringing");
        const shown_attribute test = read_attribute(board, path, "in_test");
        add_item(
            &row, "%s %s%s%s", names.names[i], word_of(read_attribute(board, path, "registered"), registered_words),
            strcmp(ringing.text, "1") == 0 ? " ringing" : "", strcmp(test.text, "1") == 0 ? " under test" : "");
    }
    end_row(&row, names.damaged ? "damaged" : "none");
}

// As in the kernel's list: bus and function, vendor and device, ..., driver.
static void show_wifi(int board) {
    static constexpr char path[] = "unit/proc/bus/pci/devices";
    const ptrdiff_t size = read_bytes(board, path, file_bytes);
    std::string_view text(file_bytes, size < 0 ? 0 : static_cast<size_t>(size));
    status_row row = begin_row("Wi-Fi");
    while (!text.empty()) {
        const std::string_view line = take_line(&text);
        const size_t id = line.find('\t');
        const size_t driver = line.rfind('\t');
        if (id == std::string_view::npos || driver < id + 9 ||
            !is_printable(text_front(text_behind(line, id + 1), 8)) ||
            !is_printable(text_behind(line, driver + 1))) {
            add_item(&row, "damaged");
            break;
        }
        add_item(&row, "%.*s (%.4s:%.4s)", static_cast<int>(line.size() - driver - 1), line.data() + driver + 1,
                 line.data() + id + 1, line.data() + id + 5);
    }
    end_row(&row, size < 0 ? read_attribute(board, path).text : "none");
}

// ---- faults, trace, clock ----

static void show_faults(int board) {
    static constexpr size_t shown_most = 5;
    const ptrdiff_t size = read_bytes(board, "faults", file_bytes);
    std::string_view text(file_bytes, size < 0 ? 0 : static_cast<size_t>(size));
    size_t count = 0;
    status_row row = begin_row("faults");
    while (!text.empty()) {
        const std::string_view line = take_line(&text);
        const size_t rule = line.find_first_not_of(" \t\r");
        if (rule == std::string_view::npos || line[rule] == '#') {
            continue;
        }
        count++;
        if (count <= shown_most) {
            const std::string_view shown = is_printable(line) ? text_front(line, 85) : std::string_view("damaged");
            printf("%*s%.*s\n", count == 1 ? 0 : label_width + 1, "", static_cast<int>(shown.size()), shown.data());
        }
    }
    if (count > shown_most) {
        printf("%*sand %zu more\n", label_width + 1, "", count - shown_most);
    } else if (count == 0) {
        const shown_attribute faults = read_attribute(board, "faults");
        end_row(&row, size < 0 && faults.text[0] != '?' ? "damaged" : "none");
    }
}

// The lines of a file; -1 if it cannot be read.
static long long count_lines(int board, const char *path) {
    const board_fd file(openat(board, path, O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
    long long lines = 0;
    ssize_t got = 0;
    while ((got = read(file.fd, file_bytes, sizeof file_bytes)) > 0) {
        lines += std::count(file_bytes, file_bytes + got, '\n');
    }
    return got < 0 ? -1 : lines;
}

static void show_trace(int board) {
    struct stat status = {};
    const bool on = fstatat(board, "trace", &status, AT_SYMLINK_NOFOLLOW) == 0;
    const bool off = !on && fstatat(board, "trace.off", &status, AT_SYMLINK_NOFOLLOW) == 0;
    status_row row = begin_row("trace");
    add_item(&row, on ? "on" : "off");
    if (on || off) {
        const long long lines = S_ISREG(status.st_mode) ? count_lines(board, on ? "trace" : "trace.off") : -1;
        add_item(&row, lines < 0 ? "damaged" : "%lld %s", lines, lines == 1 ? "line" : "lines");
    }
    end_row(&row);
}

static void show_clock(int board) {
    status_row row = begin_row("clock");
    board_clock clock = {};
    struct stat status = {};
    if (read_clock(board, &clock)) {
        const time_t seconds = static_cast<time_t>((clock.base + clock.slept) / 1'000'000'000);
        char text[32] = "damaged";
        tm parts = {};
        if (gmtime_r(&seconds, &parts) != nullptr) {
            strftime(text, sizeof text, "%F %T UTC", &parts);
        }
        add_item(&row, "under --no-wait: %s", text);
        add_item(&row, "%llu.%06llu s slept", static_cast<unsigned long long>(clock.slept / 1'000'000'000),
                 static_cast<unsigned long long>(clock.slept / 1000 % 1'000'000));
    } else if (fstatat(board, "clock", &status, AT_SYMLINK_NOFOLLOW) == 0) {
        add_item(&row, "damaged");
    }
    end_row(&row, "the real one; --no-wait was not used");
}

int main(int argc, char *argv[]) {
    const board_fd board(argc != 2 ? -1 : open(argv[1], O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (board.fd < 0) {
        const char *why = argc == 2 ? strerror(errno) : "takes a board";
        fprintf(stderr, "vxstatus: %s: %s; see \"vxboard status --help\"\n",
                escaped(argc == 2 ? argv[1] : "a word too many or too few").text, why);
        return 2;
    }
    printf("%-*s %s\n", label_width, "board", escaped(argv[1]).text);
    status_row row = begin_row("profile");
    add_item(&row, "%s", read_attribute(board.fd, "profile").text);
    end_row(&row);
    show_unit(board.fd);
    show_buses(board.fd);
    show_driver(board.fd);
    show_flash(board.fd);
    show_pon(board.fd);
    show_ports(board.fd);
    show_leds(board.fd);
    show_phones(board.fd);
    show_wifi(board.fd);
    show_faults(board.fd);
    show_trace(board.fd);
    show_clock(board.fd);
    if (fflush(stdout) != 0 || ferror(stdout) != 0) {
        fprintf(stderr, "vxstatus: cannot write what is shown: %s\n", strerror(errno));
        return 2;
    }
    return 0;
}

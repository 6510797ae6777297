#include "harness.h"

#include "bob/bob_image.h"
#include "libvx.h"
#include "vxcli.h"

#include <algorithm>
#include <cctype>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <iterator>
#include <memory>
#include <unistd.h>

int vxcli_main(int argc, char *argv[]); // the tool's main()
void forget_private_state();

extern "C" size_t LLVMFuzzerMutate(uint8_t *data, size_t size, size_t max_size);

// The engine may close standard error, so that what the commands say there is not to be seen; this is to be.
static const int report_fd = dup(STDERR_FILENO);

void must(bool holds, const char *what) {
    if (!holds) {
        dprintf(report_fd, "does not hold: %s\n", what);
        abort();
    }
}

std::string_view take_part(std::string_view *text, char separator) {
    const size_t length = std::min(text->find(separator), text->size());
    const std::string_view part = text->substr(0, length);
    text->remove_prefix(std::min(length + 1, text->size()));
    return part;
}

uint8_t take_byte(std::string_view *data) {
    if (data->empty()) {
        return 0;
    }
    const auto byte = static_cast<uint8_t>(data->front());
    data->remove_prefix(1);
    return byte;
}

// ---- one command, one process ----

template <typename... record_t>
static void clear_records(record_t &...records) {
    ((records = {}), ...);
}

static size_t end_process() {
    fflush(stdout);
    const size_t left_open = board_end_process();
    forget_private_state();
    libvx_DbgLevel = 0;
    clear_records(g_st_ux_data, g_st_ux3320s_data, g_st_ux336x_data, g_st_gn_data, g_st_gn28l97_data,
                  g_st_gn28l95_data);
    return left_open;
}

int run_line(std::string_view line) {
    static constexpr size_t words_max = 300;
    // Each word in a block of its own, so that reading past its end is seen.
    std::vector<std::unique_ptr<char[]>> words;
    for (std::string_view rest = line; !rest.empty() && words.size() < words_max;) {
        const std::string_view word = take_part(&rest, ' ');
        auto block = std::make_unique<char[]>(word.size() + 1); // ends with a NUL, or at one
        std::ranges::replace_copy(word, block.get(), '\x01', ' ');
        words.push_back(std::move(block));
    }
    char name[] = "vxcli";
    std::vector<char *> argv(words.size() + 2); // so many and no more, with a null at the end
    argv[0] = name;
    std::ranges::transform(words, argv.begin() + 1, [](const auto &word) { return word.get(); });
    const auto begins_with = [&](const char *group, const char *command) {
        return words.size() > 1 && strcmp(argv[1], group) == 0 && strcmp(argv[2], command) == 0;
    };
    if (begins_with("sys", "segv")) {
        return 0; // it crashes by design
    }
    const int status = vxcli_main(static_cast<int>(words.size() + 1), argv.data());
    const size_t left_open = end_process();
    must(left_open == 0 || begins_with("consoleRedir", "off"), // the console stays open
         "what was opened is closed");
    must(status == 0 || status == 1, "the exit status is 0 or 1");
    return status;
}

// ---- changing an input part by part ----

static uint32_t draw_state;

void draw_seed(uint32_t seed) {
    draw_state = seed;
}

uint32_t draw_below(uint32_t end) {
    draw_state = draw_state * 1664525 + 1013904223;
    return static_cast<uint32_t>(static_cast<uint64_t>(draw_state) * end >> 32);
}

static const vxcli_subCmd_t &draw_group() {
    uint32_t count = 0;
    while (subCmds[count].name != nullptr) {
        count++;
    }
    return subCmds[draw_below(count)];
}

// clang-format off
static const char *const likely_words[] = {
    "0", "1", "2", "3", "4", "5", "7", "8", "14", "15", "16", "30", "31", "32", "64", "127", "128", "255", "256",
    "4095", "4096", "65535", "65536", "2147483647", "2147483648", "4294967295", "4294967296",
    "18446744073709551615", "99999999999999999999", "-1", "-2147483648", "0x0", "0x50", "0x51", "0x60", "0x7f",
    "0x80", "0xff", "0x100", "0x", "08", "1.5", "-0.001", "1e9", "nan", "", "x", "=", "0x1f4=0x5a", "100=", ":",
    "ff:ff:ff:ff:ff:ff", "02:00:5e:10:00:01", "02:00", "192.168.1.1", "0.0.0.0", "fe80::1", "::", "lan", "wan",
    "tr069", "all", "a0", "a0_tab", "a2_lower", "table", "sp", "wrr", "spwrr", "eth0", "null", "mt7915", "mt7603",
    "header", "rsv", "wav600", "2g", "5g", "/tmp/x", "/etc/vx_sys_info", "mode0", "mode1", "VXSN12345678",
    "0123456789ABCDEF", "%s%n", "AUTO", "auto_a", "auto_s", "group_9", "GPON", "XGSPON", "ETHER", "SFU", "HGU",
    "English", "Japanese", "LED_PON", "LED_DNLINK", "BLINK", "OFF", "ON", "p0off", "p1off", "xoff", "off",
    "prepare", "start", "stop", "enable", "0xd0", "0xe9", "wifi", "serial", "usb", "wl6", "wl", "ser", "show",
    "mode", "reset", "10M", "2500M", "half", "full", "broadcast", "unicast", "arp", "ieee1905", "trap", "0,1,2,3",
    "2026-11-23", "SI3219x", "AAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAA",
};
// clang-format on

// A word out of a help text such as "rate <index> [en 0|1]".
static std::string help_word(const char *help) {
    std::vector<std::string> words(1);
    for (const char *c = help; *c != '\0'; c++) {
        if (isalnum(static_cast<unsigned char>(*c)) != 0 || strchr("_.:-", *c) != nullptr) {
            words.back() += *c;
        } else if (!words.back().empty()) {
            words.emplace_back();
        }
    }
    return words[draw_below(static_cast<uint32_t>(words.size()))];
}

// A run of values, so many as the line says.
static std::string draw_run() {
    const uint32_t count = 1 + draw_below(draw_below(2) == 0 ? 256 : 40);
    std::string line = "bob write_regs 0x5" + std::to_string(draw_below(2)) + " " +
                       std::to_string(draw_below(256)) + " " + std::to_string(count);
    for (uint32_t i = 0; i < count; i++) {
        line += " " + std::to_string(draw_below(256));
    }
    return line;
}

std::string draw_line() {
    if (draw_below(24) == 0) {
        return draw_run();
    }
    const vxcli_subCmd_t &group = draw_group();
    uint32_t commands = 0;
    while (group.subCmds[commands].name != nullptr) {
        commands++;
    }
    const vxcli_cmd_t &command = group.subCmds[draw_below(commands)];
    std::string line = std::string(group.name) + " " + command.name;
    const uint32_t least = static_cast<uint32_t>(command.argcMin);
    for (uint32_t i = least + draw_below(draw_below(8) == 0 ? 20 : 4); i > 0; i--) {
        const bool from_help = command.helpStr != nullptr && draw_below(3) == 0;
        line += ' ';
        line += from_help ? help_word(command.helpStr) : likely_words[draw_below(std::size(likely_words))];
    }
    return line;
}

size_t change_parts(uint8_t *data, size_t size, size_t max_size, unsigned seed, char separator,
                    std::string (*fresh)()) {
    draw_seed(seed);
    if (draw_below(3) != 0) {
        return LLVMFuzzerMutate(data, size, max_size);
    }
    std::vector<std::string> parts;
    for (std::string_view rest = as_text(data, size); !rest.empty();) {
        parts.emplace_back(take_part(&rest, separator));
    }
    const auto place = parts.begin() + draw_below(static_cast<uint32_t>(parts.size()) + 1);
    const uint32_t how = draw_below(4);
    if (how == 0 || place == parts.end()) {
        parts.insert(place, fresh());
    } else if (how == 1) {
        *place = fresh();
    } else if (how == 2) {
        std::swap(*place, parts[draw_below(static_cast<uint32_t>(parts.size()))]);
    } else {
        parts.erase(place);
    }
    std::string text;
    for (const std::string &part : parts) {
        text += part + separator;
    }
    text.resize(std::min(text.size(), max_size));
    std::ranges::copy(text, data);
    return text.size();
}

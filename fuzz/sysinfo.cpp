// The store of manufacturing fields. Input: a key and a value, each ended by a line end, then /etc/vx_sys_info.

#include "harness.h"

#include "libvx.h"
#include "sysinfo_store.h"

#include <string>

static constexpr char info_file[] = "unit/etc/vx_sys_info";

static std::string value_of(const char *key) {
    char value[sysinfo_value_max] = "?";
    return sysinfo_get(key, value) == 0 ? value : "(none)";
}

// A line, as far as it is text.
static std::string take_text(std::string_view *input) {
    const std::string_view line = take_part(input, '\n');
    return std::string(line.substr(0, line.find('\0')));
}

int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    std::string_view input = as_text(data, size);
    board_reset("ux3361");
    const std::string key = take_text(&input);
    const std::string value = take_text(&input);
    board_put(info_file, input);

    const std::string vendor = value_of("Vendor");
    const std::string before = board_get(info_file);
    if (sysinfo_set(key.c_str(), value.c_str()) == 0) {
        must(value_of(key.c_str()) == value, "what was set is what is read");
        must(key == "Vendor" || value_of("Vendor") == vendor, "other fields stay");
    } else {
        must(board_get(info_file) == before, "what is refused changes nothing");
    }
    const std::string stored = board_get(info_file);
    if (run_line("sys save") == 0 && libvx_sys_saveSysInfo() == 0) {
        board_put(info_file, "");
        must(libvx_sys_getSysInfo() == 0 && board_get(info_file) == stored, "what was saved is what is loaded");
    }
    run_line("sys show");
    run_line("sys load");
    run_line("sys phyportmap");
    run_line("sys mac 02:00:5e:10:00:01");
    run_line("sys delete all");
    return 0;
}

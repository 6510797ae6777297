#include "sys/sys_info.h"

#include "common/shell.h"
#include "libvx.h"
#include "sys/sys_field.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <span>

static constexpr char INFO_FILE[] = "/etc/vx_sys_info";
static constexpr char DEFAULT_FILE[] = "/etc/default_sys_info";

// What the rest of the system reads instead of asking the library.
static constexpr char MAC_BASE_FILE[] = "/etc/macAddrBase";
static constexpr char MAC_LIST_FILE[] = "/etc/macAddr";
static constexpr char MFG_MODE_FILE[] = "/etc/MfgMode";

// ---- the check ----

// The place that the message is known by. It stays although the code has moved: log filters look for it.
static void log_missing_info() {
    if (libvx_DbgLevel >= 1) {
        libvx_logPrint("libvx Error", "src/vxcli_sys", "check_sys_isOK", 348, "Error opening sys info file %s\n",
                       INFO_FILE);
    }
}

static int32_t restore_default() {
    shell_copy(DEFAULT_FILE, INFO_FILE);
    return 0;
}

static bool is_blank(std::span<const uint8_t> data) {
    return std::ranges::all_of(data, [](uint8_t byte) { return byte == 0x00 || byte == 0xFF; });
}

int32_t check_sys_isOK() {
    FILE *file = fopen(INFO_FILE, "r");
    if (file == nullptr) {
        log_missing_info();
        return restore_default();
    }
    fseek(file, 0, SEEK_END);
    const long length = ftell(file);
    rewind(file);
    std::array<uint8_t, 4096> data; // information files are shorter; only the beginning of a longer one counts
    const size_t count = fread(data.data(), 1, data.size(), file);
    fclose(file);
    if (length < 0) {
        return 1;
    }
    return is_blank(std::span(data).first(count)) ? restore_default() : 0;
}

// ---- the published files ----

using mac_address = std::array<uint8_t, 6>;

static void print_mac(FILE *file, const mac_address &mac) {
    fprintf(file, "%02X:%02X:%02X:%02X:%02X:%02X\n", mac[0], mac[1], mac[2], mac[3], mac[4], mac[5]);
}

// The address `offset` after `base`. It stays within the base's OUI: the low three bytes wrap.
static mac_address mac_after(const mac_address &base, uint32_t offset) {
    const uint32_t low = (uint32_t{base[3]} << 16 | uint32_t{base[4]} << 8 | base[5]) + offset;
    return {base[0],
            base[1],
            base[2],
            static_cast<uint8_t>(low >> 16),
            static_cast<uint8_t>(low >> 8),
            static_cast<uint8_t>(low)};
}

static void publish_mac_addresses() {
    mac_address base = {};
    libvx_sys_getBaseMac(base.data());
    FILE *file = fopen(MAC_BASE_FILE, "w+");
    if (file != nullptr) {
        print_mac(file, base);
        fclose(file);
    }
    file = fopen(MAC_LIST_FILE, "w+");
    if (file == nullptr) {
        return;
    }
    const int32_t count = libvx_sys_getMacNum();
    fprintf(file, "%d\n", count);
    for (int32_t i = 0; i < count; i++) {
        print_mac(file, mac_after(base, static_cast<uint32_t>(i)));
    }
    fclose(file);
}

static void publish_mfg_mode() {
    const int32_t mode = libvx_sys_getMfgMode();
    FILE *file = fopen(MFG_MODE_FILE, "w+");
    if (file == nullptr) {
        return;
    }
    fprintf(file, "%d", mode);
    fclose(file);
    libvx_sys_button(mode);
}

// ---- handlers ----

// The fields are loaded before the file is checked: a default that is put in its place takes effect from the
// next command on.
int32_t sys_load(int32_t, const char *const[], const char *) {
    libvx_sys_getSysInfo();
    int32_t result = check_sys_isOK();
    result |= libvx_sys_getFwInfo();
    publish_mac_addresses();
    publish_mfg_mode();
    sys_report("load", result);
    return result;
}

int32_t sys_save(int32_t, const char *const[], const char *) {
    sys_report("save", libvx_sys_saveSysInfo());
    return 0;
}

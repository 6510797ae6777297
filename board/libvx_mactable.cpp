// Switch services: MAC addresses. The table of a port is BOARD/switch/portN/mac_table, a line "MAC VLAN" for each
// entry; BOARD/switch/cpu_mac has a line "MAC IP SIDE PORT PORT" for each rule that takes traffic to the CPU.

#include "board_call.h"
#include "endpoint.h"
#include "line_file.h"

#include <arpa/inet.h>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <unistd.h>

static constexpr uint32_t vlans = 4096;
static constexpr uint32_t cpu_rules_max = 256;

struct mac_text {
    char text[18];

    explicit mac_text(const uint8_t mac[6]) {
        snprintf(text, sizeof text, "%02x:%02x:%02x:%02x:%02x:%02x", mac[0], mac[1], mac[2], mac[3], mac[4],
                 mac[5]);
    }
};

// ---- a port's table ----

// Calls `body(directory of the port, how many entries its table can have)`, with the switch locked.
template <typename body_t>
static int32_t with_table(const char *operation, uint16_t port, body_t body) {
    return board_call(operation, [port, body](int board) {
        const board_fd lock(dir_lock(board, switch_port.directory));
        const board_fd dir(
            openat(lock.fd, endpoint_path({switch_port, port}, "").text, O_RDONLY | O_DIRECTORY | O_CLOEXEC));
        uint32_t size = 0;
        if (dir.fd < 0 || !attr_read_number(lock.fd, "mac_table_size", UINT16_MAX, &size)) {
            return int32_t{LIBVX_RET_INVALID_PARAMETER};
        }
        return static_cast<int32_t>(body(dir.fd, size));
    });
}

// Takes a number of at most `digits` digits; `end` must be behind it.
static bool take_number(const char **line, int base, size_t digits, char end, uint32_t *number) {
    const size_t length = strspn(*line, base == 16 ? "0123456789abcdefABCDEF" : "0123456789");
    *number = static_cast<uint32_t>(strtoul(*line, nullptr, base));
    *line += length;
    return length > 0 && length <= digits && *(*line)++ == end;
}

static bool parse_entry(const char *line, uint8_t port, libvx_switch_macEntry_t *entry) {
    *entry = {.portId = port, .mode = 0, .vlan = 0, .mac = {}};
    line += strspn(line, " \t");
    uint32_t number = 0;
    for (int i = 0; i < 6; i++) {
        if (!take_number(&line, 16, 2, i < 5 ? ':' : ' ', &number)) {
            return false;
        }
        entry->mac[i] = static_cast<uint8_t>(number);
    }
    line += strspn(line, " \t");
    const size_t digits = strspn(line, "0123456789");
    number = static_cast<uint32_t>(strtoul(line, nullptr, 10));
    entry->vlan = static_cast<uint16_t>(number);
    return digits > 0 && digits <= 4 && number < vlans && line_is_empty(line + digits);
}

// One entry for each line. False if there are more than `size`, or a line is none; null if there are no lines.
static bool parse_table(const char *text, uint8_t port, uint32_t size, uint16_t *count,
                        libvx_switch_macEntry_t **table) {
    uint32_t lines = 0;
    for (const char *line = text; *line != '\0'; line = line_after(line)) {
        lines += line_is_empty(line) ? 0 : 1;
    }
    if (lines == 0) {
        *count = 0;
        *table = nullptr;
        return true;
    }
    auto *entries = static_cast<libvx_switch_macEntry_t *>(malloc(lines * sizeof(libvx_switch_macEntry_t)));
    bool ok = lines <= size && entries != nullptr;
    uint32_t used = 0;
    for (const char *line = text; ok && *line != '\0'; line = line_after(line)) {
        ok = line_is_empty(line) || parse_entry(line, port, &entries[used++]);
    }
    if (!ok) {
        free(entries);
        return false;
    }
    *count = static_cast<uint16_t>(used);
    *table = entries;
    return true;
}

int32_t libvx_switchApi_getMacTable(uint16_t port, uint16_t *count, libvx_switch_macEntry_t **table) {
    if (count == nullptr || table == nullptr || port > UINT8_MAX) {
        return LIBVX_RET_INVALID_PARAMETER;
    }
    return with_table(__func__, port, [=](int dir, uint32_t size) {
        const line_file file(dir, "mac_table", size);
        return file.text != nullptr && parse_table(file.text, static_cast<uint8_t>(port), size, count, table)
                   ? LIBVX_RET_OK
                   : LIBVX_RET_FILE_READ_FAIL;
    });
}

int32_t libvx_switchApi_clearMacTable(uint16_t port) {
    return with_table(__func__, port, [](int dir, uint32_t) {
        return file_replace(dir, "mac_table", {}) ? LIBVX_RET_OK : LIBVX_RET_FILE_WRITE_FAIL;
    });
}

static int32_t change_entry(const char *operation, const libvx_switch_macEntry_t *entry,
                            int32_t (*change)(int, const char *, const char *, uint32_t)) {
    if (entry == nullptr) {
        return LIBVX_RET_INVALID_PARAMETER;
    }
    return with_table(operation, entry->portId, [=](int dir, uint32_t size) {
        if (entry->mode != 0 || entry->vlan >= vlans) {
            return int32_t{LIBVX_RET_INVALID_PARAMETER};
        }
        char line[line_file_width];
        snprintf(line, sizeof line, "%s %u", mac_text(entry->mac).text, unsigned{entry->vlan});
        return change(dir, "mac_table", line, size);
    });
}

int32_t libvx_switchApi_addMacEntry(const libvx_switch_macEntry_t *entry) {
    return change_entry(__func__, entry, line_add);
}

int32_t libvx_switchApi_delMacEntry(const libvx_switch_macEntry_t *entry) {
    return change_entry(__func__, entry, line_remove);
}

// ---- rules for the CPU ----

struct cpu_rule {
    uint8_t unit;
    const uint8_t *mac;
    uint32_t ipv4; // host byte order
    const uint8_t *ipv6;
    uint8_t iswan;
    int32_t ports[2];
};

static bool is_port(int32_t port) {
    return port >= -1 && port <= UINT16_MAX;
}

static int32_t change_rule(const char *operation, const cpu_rule &rule,
                           int32_t (*change)(int, const char *, const char *, uint32_t)) {
    return board_call(operation, [&](int board) {
        // One address: of either kind, but not of both.
        if (rule.unit != 0 || rule.mac == nullptr || (rule.ipv4 != 0) == (rule.ipv6 != nullptr) || rule.iswan > 2 ||
            !is_port(rule.ports[0]) || !is_port(rule.ports[1])) {
            return int32_t{LIBVX_RET_INVALID_PARAMETER};
        }
        const in_addr ipv4 = {htonl(rule.ipv4)};
        char address[INET6_ADDRSTRLEN] = "";
        inet_ntop(rule.ipv6 != nullptr ? AF_INET6 : AF_INET,
                  rule.ipv6 != nullptr ? static_cast<const void *>(rule.ipv6) : &ipv4, address, sizeof address);
        char line[line_file_width];
        snprintf(line, sizeof line, "%s %s %u %d %d", mac_text(rule.mac).text, address, unsigned{rule.iswan},
                 rule.ports[0], rule.ports[1]);
        const board_fd lock(dir_lock(board, switch_port.directory));
        return change(lock.fd, "cpu_mac", line, cpu_rules_max);
    });
}

int32_t libvx_switchApi_addCpuMac(uint8_t unit, const uint8_t mac[6], uint32_t ipv4, const uint8_t *ipv6,
                                  uint8_t iswan, int32_t portA, int32_t portB) {
    return change_rule(__func__, {unit, mac, ipv4, ipv6, iswan, {portA, portB}}, line_add);
}

int32_t libvx_switchApi_delCpuMac(uint8_t unit, const uint8_t mac[6], uint32_t ipv4, const uint8_t *ipv6,
                                  uint8_t iswan, int32_t portA, int32_t portB) {
    return change_rule(__func__, {unit, mac, ipv4, ipv6, iswan, {portA, portB}}, line_remove);
}

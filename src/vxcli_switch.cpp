// The MAC table group: its command table and the commands about the entries of a port.

#include "vxcli.h"

#include "common/arguments.h"
#include "common/mac_word.h"
#include "libvx.h"
#include "switch/switch_cpu_mac.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>

// What comes of the operations is not looked at, but for the reading of the table.

// ---- ports ----

// The PON port, by its name or its number, and the Ethernet ports that the library counts.
static bool accepts_port(const char *word, int32_t *index) {
    *index = word_to_signed_decimal(word);
    if (*index == LIBVX_SW_PORT_PON || strcmp(word, "pon") == 0) {
        *index = LIBVX_SW_PORT_PON;
        return true;
    }
    return accepts_below<libvx_sys_getEthNum>(word, index);
}

static constexpr index_rule_s PORT = {"port", accepts_port};

static int32_t switch_list_mac(int32_t, const char *const argv[], const char *help) {
    int32_t port = 0;
    if (!take_index(argv[1], PORT, help, &port)) {
        return 1;
    }
    uint16_t count = 0;
    libvx_switch_macEntry_t *table = nullptr;
    if (libvx_switchApi_getMacTable(static_cast<uint16_t>(port), &count, &table) != 0) {
        return 0; // nothing to show is no failure of the command
    }
    printf("mac address:  port=%d, total=%d\n", port, int{count});
    for (int i = 0; i < count; i++) {
        const libvx_switch_macEntry_t &entry = table[i];
        printf("%d\t %02x:%02x:%02x:%02x:%02x:%02x\t%d\n", i, entry.mac[0], entry.mac[1], entry.mac[2],
               entry.mac[3], entry.mac[4], entry.mac[5], int{entry.vlan});
    }
    free(table);
    return 0;
}

static int32_t switch_clr_mac(int32_t, const char *const argv[], const char *help) {
    int32_t port = 0;
    if (!take_index(argv[1], PORT, help, &port)) {
        return 1;
    }
    libvx_switchApi_clearMacTable(static_cast<uint16_t>(port));
    return 0;
}

// ---- single entries ----

static constexpr uint16_t VLANS = 4096;

// Takes port, VLAN and MAC address, and prints what is about to be done. False after a report.
static bool take_entry(const char *const argv[], const char *help, const char *verb,
                       libvx_switch_macEntry_t *entry) {
    const mac_address mac = word_to_mac(argv[3]);
    const auto vlan = static_cast<uint16_t>(word_to_decimal(argv[2])); // wraps before it is judged
    int32_t port = 0;
    if (!take_index(argv[1], PORT, help, &port)) {
        return false;
    }
    if (vlan >= VLANS) {
        show_bad_arguments(argv[2], help);
        return false;
    }
    *entry = {.portId = static_cast<uint8_t>(port), .mode = 0, .vlan = vlan, .mac = {}};
    memcpy(entry->mac, mac.data(), mac.size());
    printf("%s mac address:  port=%d vid =%d %02x:%02x:%02x:%02x:%02x:%02x\n", verb, port, int{vlan}, mac[0],
           mac[1], mac[2], mac[3], mac[4], mac[5]);
    return true;
}

static int32_t switch_add_mac(int32_t, const char *const argv[], const char *help) {
    libvx_switch_macEntry_t entry = {};
    if (!take_entry(argv, help, "add", &entry)) {
        return 1;
    }
    libvx_switchApi_addMacEntry(&entry);
    return 0;
}

static int32_t switch_del_mac(int32_t, const char *const argv[], const char *help) {
    libvx_switch_macEntry_t entry = {};
    if (!take_entry(argv, help, "del", &entry)) {
        return 1;
    }
    libvx_switchApi_delMacEntry(&entry);
    return 0;
}

// ---- the table ----

// The help texts are kept to the letter, misspelt ones included: they are listed by scripts.
constinit const vxcli_cmd_t switch_cmds[] = {
    {"addcpumac", switch_add_cpu_mac, 3,
     "addcpumac <mac: xx:xx:xx:xx:xx:xx> <ipv4: xxx.xxx.xxx.xxx|ipv6 xxxx:xxxx::xxxx> <iswan: 0|1|2,0-lan 1-wan "
     "2-tr069> <sport:-1 ingore> <dport:-1 ingore>: add cpu mac"},
    {"delcpumac", switch_del_cpu_mac, 3,
     "delcpumac <mac: xx:xx:xx:xx:xx:xx> <ipv4: xxx.xxx.xxx.xxx|ipv6 xxxx:xxxx::xxxx> <iswan: 0|1|2,0-lan 1-wan "
     "2-tr069>: del cpu mac"},
    {"addmac", switch_add_mac, 3, "addmac <index> <vid> <xx:xx:xx:xx:xx:xx>: add mac address entry"},
    {"delmac", switch_del_mac, 3, "delmac <index> <vid> <xx:xx:xx:xx:xx:xx>: delete mac address entry"},
    {"listmac", switch_list_mac, 1, "listmac <index> : list mac table"},
    {"clrmac", switch_clr_mac, 1, "clrmac <index> : clear mac table"},
    {nullptr, nullptr, 0, nullptr},
};

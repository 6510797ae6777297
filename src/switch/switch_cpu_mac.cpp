#include "switch/switch_cpu_mac.h"

#include "common/mac_word.h"
#include "common/words.h"
#include "libvx.h"

#include <arpa/inet.h>
#include <array>
#include <cstdio>
#include <cstring>

// The side that an entry is on: 0 is the LAN, 1 a WAN.
static constexpr uint32_t SIDE_TR069 = 2;

// The library's value for "any port".
static constexpr int32_t NO_PORT = -1;

enum class ip_family : uint8_t { none, ipv4, ipv6 };

struct cpu_mac_s {
    mac_address mac;
    ip_family family;
    uint32_t ipv4;                // host byte order
    std::array<uint8_t, 16> ipv6; // network byte order
    uint8_t iswan;
};

// ---- words ----
// False after the message of the first word that is wrong.

static bool take_ipv4(const char *word, cpu_mac_s *entry) {
    in_addr address = {};
    if (strcmp(word, "0.0.0.0") == 0 || libvx_is_valid_ipv4Addr(word) == 0 ||
        inet_pton(AF_INET, word, &address) != 1) {
        printf("ipv4 %s is wrong format \n", word);
        return false;
    }
    entry->family = ip_family::ipv4;
    entry->ipv4 = ntohl(address.s_addr);
    return true;
}

// Whether the address is twelve zero bytes and a little-endian 0 or 1. So "::" is refused, and "::100:0", but the
// loopback address "::1" is not: it is meant so.
static bool is_refused(const std::array<uint8_t, 16> &address) {
    auto rest = address;
    rest[12] = 0;
    return address[12] <= 1 && rest == std::array<uint8_t, 16>{};
}

static bool take_ipv6(const char *word, cpu_mac_s *entry) {
    if (inet_pton(AF_INET6, word, entry->ipv6.data()) != 1 || is_refused(entry->ipv6)) {
        printf("ipv6 %s is wrong format \n", word);
        return false;
    }
    entry->family = ip_family::ipv6;
    return true;
}

// MAC address, IP address and side. A word that looks like no IP address at all is not wrong: its entry has no
// family, and nothing is done.
static bool take_entry(const char *const argv[], cpu_mac_s *entry) {
    const uint32_t iswan = word_to_decimal(argv[3]);
    if (iswan > SIDE_TR069) {
        printf("iswan %d is wrong value \n", static_cast<int>(iswan));
        return false;
    }
    entry->iswan = static_cast<uint8_t>(iswan);
    entry->mac = word_to_mac(argv[1]);
    const char *address = argv[2];
    if (strchr(address, '.') != nullptr) {
        return take_ipv4(address, entry);
    }
    if (strchr(address, ':') != nullptr) {
        return take_ipv6(address, entry);
    }
    return true;
}

// ---- handlers ----
// What comes of the operations is not looked at.

// `address` is the word as typed; for IPv4 no other form than the dotted one is taken.
static void announce(const char *verb, const mac_address &mac, const char *address) {
    printf("%s cpu mac %02x:%02x:%02x:%02x:%02x:%02x %s\n", verb, mac[0], mac[1], mac[2], mac[3], mac[4], mac[5],
           address);
}

static const uint8_t *ipv6_or_null(const cpu_mac_s &entry) {
    return entry.family == ip_family::ipv6 ? entry.ipv6.data() : nullptr;
}

static int32_t port_word(int32_t argc, const char *const argv[], int32_t index) {
    return index < argc ? word_to_signed_decimal(argv[index]) : NO_PORT;
}

// The ports count on the management WAN only, the destination first.
int32_t switch_add_cpu_mac(int32_t argc, const char *const argv[], const char *) {
    const int32_t sport = port_word(argc, argv, 4);
    const int32_t dport = port_word(argc, argv, 5);
    cpu_mac_s entry = {};
    if (!take_entry(argv, &entry)) {
        return 1;
    }
    if (entry.family == ip_family::none) {
        return 0;
    }
    announce("add", entry.mac, argv[2]);
    const bool with_ports = entry.iswan == SIDE_TR069;
    libvx_switchApi_addCpuMac(0, entry.mac.data(), entry.ipv4, ipv6_or_null(entry), entry.iswan,
                              with_ports ? dport : NO_PORT, with_ports ? sport : NO_PORT);
    return 0;
}

// Entries of the management WAN stay. The numbers in the notice are the places that the message is known by, and
// stay although the code has moved.
int32_t switch_del_cpu_mac(int32_t, const char *const argv[], const char *) {
    cpu_mac_s entry = {};
    if (!take_entry(argv, &entry)) {
        return 1;
    }
    if (entry.family == ip_family::none) {
        return 0;
    }
    announce("del", entry.mac, argv[2]);
    if (entry.iswan == SIDE_TR069) {
        printf("(%d)Not del cpumacEntry for tr069 wan,check x_vx_remote_port or x_vx_port is right\r\n",
               entry.family == ip_family::ipv4 ? 126 : 144);
        return 0;
    }
    libvx_switchApi_delCpuMac(0, entry.mac.data(), entry.ipv4, ipv6_or_null(entry), entry.iswan, NO_PORT, NO_PORT);
    return 0;
}

#include "port/port_limit.h"

#include "common/rate_limit.h"
#include "libvx.h"
#include "port/port_index.h"

#include <cstdio>

// A limit that cannot be read prints as the one before it, the first one as zeros. What comes of a set operation
// is not looked at.

static constexpr uint32_t PORT_RATE_MAX = 2500000;  // kbps
static constexpr uint32_t STORM_RATE_MAX = 1024000; // packets per second

// By the library's values.
enum direction : uint32_t { INGRESS = 0, EGRESS = 1 };

int32_t port_config_rate_limit(int32_t argc, const char *const argv[], const char *help) {
    int32_t index = 0;
    if (!take_index(argv[1], PORT_OR_PON, help, &index)) {
        return 1;
    }
    const auto port = static_cast<uint16_t>(index);
    rate_limit_s limit = {};
    if (argc != 5) {
        libvx_switchApi_portGetRateLimit(port, INGRESS, &limit.en, &limit.rate);
        printf("port %d\n", index);
        print_rate_limit("rx", limit, "kbps");
        libvx_switchApi_portGetRateLimit(port, EGRESS, &limit.en, &limit.rate);
        print_rate_limit("tx", limit, "kbps");
        return 0;
    }
    uint32_t dir = 0;
    if (!take_number(argv[2], EGRESS, help, &dir) || !take_rate_limit(&argv[3], PORT_RATE_MAX, help, &limit)) {
        return 1;
    }
    libvx_switchApi_portSetRateLimit(port, dir, limit.en, limit.rate);
    return 0;
}

// By the library's values: what is typed, and how its line begins.
static constexpr const char *STORM_TYPES[] = {"broadcast", "multicast", "unicast"};
static constexpr const char *STORM_LINES[] = {"rx broadcast", "rx multicast", "rx unicast"};

int32_t port_config_storm_rate_limit(int32_t argc, const char *const argv[], const char *help) {
    int32_t index = 0;
    if (!take_index(argv[1], PORT_OR_PON, help, &index)) {
        return 1;
    }
    const auto port = static_cast<uint16_t>(index);
    rate_limit_s limit = {};
    if (argc != 5) {
        printf("port %d\n", index);
        for (uint32_t type = 0; type < std::size(STORM_TYPES); type++) {
            libvx_switchApi_portGetStormRateLimit(port, type, INGRESS, &limit.en, &limit.rate);
            print_rate_limit(STORM_LINES[type], limit, "pps");
        }
        return 0;
    }
    uint32_t type = 0;
    if (!take_name(argv[2], STORM_TYPES, help, &type) || !take_rate_limit(&argv[3], STORM_RATE_MAX, help, &limit)) {
        return 1;
    }
    libvx_switchApi_portSetStormRateLimit(port, type, INGRESS, limit.en, limit.rate);
    return 0;
}

// Switch services: the ports, each with its attributes in BOARD/switch/portN. A port without a directory does not
// exist.

#include "attr_numbers.h"
#include "board_call.h"
#include "endpoint.h"
#include "sysinfo_store.h"

#include <cstdlib>
#include <cstring>
#include <iterator>

static constexpr uint32_t port_rate_max = 2500000;  // kbps
static constexpr uint32_t storm_rate_max = 1024000; // packets per second

int32_t libvx_sys_getEthNum(void) {
    return static_cast<int32_t>(number_get(__func__, "switch", "ports", UINT16_MAX));
}

static constexpr char counters[] =
    "dsDropEvents usDropEvents dsOcts usOcts dsPkts usPkts dsBcastPkts usBcastPkts dsMcastPkts usMcastPkts "
    "dsCrcErrPkts usCrcErrPkts dsUnderSzPkts usUnderSzPkts dsOverSzPkts usOverSzPkts dsFragments usFragments "
    "dsJabbers usJabbers dsPkts64 dsPkts_64_127 dsPkts_128_255 dsPkts_256_511 dsPkts_512_1023 dsPkts_1024_1518 "
    "usPkts64 usPkts_64_127 usPkts_128_255 usPkts_256_511 usPkts_512_1023 usPkts_1024_1518 dsDiscards usDiscards "
    "dsErr usErr statusChgTime";
static_assert(counter_names(counters) == sizeof(libvx_switch_ctcPmData_t) / sizeof(uint64_t));

void libvx_switchApi_ethGetPmData(uint8_t port, libvx_switch_ctcPmData_t *data) {
    if (data == nullptr) {
        return;
    }
    board_call(__func__, [=](int board) {
        const endpoint of = {switch_port, port};
        const board_fd dir(dir_lock(board, of.kind.directory));
        if (!endpoint_exists(dir.fd, of)) {
            return LIBVX_RET_INVALID_PARAMETER;
        }
        return counters_read_record(dir.fd, endpoint_path(of, "stats").text, counters, data)
                   ? LIBVX_RET_OK
                   : LIBVX_RET_FILE_READ_FAIL;
    });
}

// ---- the link ----

// `link` of a port is what the other end makes of it: up, speed, duplex. `link_config` is what was set: action,
// speed, duplex.

enum link_action : uint32_t { link_force = 0, link_negotiate = 1, link_reset = 2 };

// A port that is off has no link, and one that is up works as it is forced to.
int32_t libvx_switchApi_portGetLinkStatus(uint16_t port, uint32_t *link, uint32_t *speed, uint32_t *duplex) {
    if (link == nullptr || speed == nullptr || duplex == nullptr) {
        return LIBVX_RET_INVALID_PARAMETER;
    }
    return board_call(__func__, [=](int board) {
        const endpoint of = {switch_port, port};
        const board_fd dir(dir_lock(board, of.kind.directory));
        uint32_t admin = 0;
        uint32_t now[3] = {};
        uint32_t set[3] = {};
        int32_t result = endpoint_read(dir.fd, of, "admin", {&admin, 1});
        result = result != LIBVX_RET_OK ? result : endpoint_read(dir.fd, of, "link", now);
        result = result != LIBVX_RET_OK ? result : endpoint_read(dir.fd, of, "link_config", set);
        if (result == LIBVX_RET_OK) {
            const bool up = admin != 0 && now[0] != 0;
            const bool forced = set[0] == link_force && set[1] != LIBVX_SW_PORT_SPEED_AUTO;
            static constexpr uint32_t down[3] = {};
            *link = up ? now[0] : 0;
            const uint32_t *works = forced ? set : now;
            works = up ? works : down;
            *speed = works[1];
            *duplex = works[2];
        }
        return result;
    });
}

int32_t libvx_switchApi_portSetLinkCfg(uint16_t port, uint32_t action, uint32_t speed, uint32_t duplex) {
    return endpoint_set(
        __func__, {switch_port, port}, "link_config",
        {{action, link_reset}, {speed, LIBVX_SW_PORT_SPEED_2500M}, {duplex, LIBVX_SW_PORT_DUPLEX_FULL}});
}

// ---- what a port lets through ----

int32_t libvx_switchApi_portGetTrafficEn(uint16_t port, uint32_t *state) {
    return endpoint_get(__func__, {switch_port, port}, "traffic_en", {state});
}

int32_t libvx_switchApi_portSetTrafficEn(uint16_t port, uint32_t state) {
    return endpoint_set(__func__, {switch_port, port}, "traffic_en", {{state, 1}});
}

int32_t libvx_switchApi_portGetAdmin(uint16_t port, uint32_t *state) {
    return endpoint_get(__func__, {switch_port, port}, "admin", {state});
}

int32_t libvx_switchApi_portSetAdmin(uint16_t port, uint32_t state) {
    return endpoint_set(__func__, {switch_port, port}, "admin", {{state, 1}});
}

int32_t libvx_switchApi_portGetPause(uint16_t port, uint32_t *tx, uint32_t *rx, uint16_t *pausetime) {
    if (pausetime == nullptr) {
        return LIBVX_RET_INVALID_PARAMETER;
    }
    uint32_t time = *pausetime;
    const int32_t result = endpoint_get(__func__, {switch_port, port}, "pause", {tx, rx, &time});
    if (result == LIBVX_RET_OK) {
        *pausetime = static_cast<uint16_t>(time);
    }
    return result;
}

int32_t libvx_switchApi_portSetPause(uint16_t port, uint32_t tx, uint32_t rx, uint16_t pausetime) {
    return endpoint_set(__func__, {switch_port, port}, "pause", {{tx, 1}, {rx, 1}, {pausetime, UINT16_MAX}});
}

// ---- limits ----

// By the library's values.
static constexpr const char *rate_attributes[] = {"rate_rx", "rate_tx"};
static constexpr const char *storm_attributes[] = {"storm_broadcast", "storm_multicast", "storm_unicast"};

// Null for a value that the library does not know.
static const char *attribute_of(std::span<const char *const> attributes, uint32_t value) {
    return value < attributes.size() ? attributes[value] : nullptr;
}

// Only what comes in is limited by type.
static const char *storm_attribute(uint32_t type, uint32_t dir) {
    return dir == 0 ? attribute_of(storm_attributes, type) : nullptr;
}

int32_t libvx_switchApi_portGetRateLimit(uint16_t port, uint32_t dir, uint32_t *en, uint32_t *rate) {
    return endpoint_get(__func__, {switch_port, port}, attribute_of(rate_attributes, dir), {en, rate});
}

int32_t libvx_switchApi_portSetRateLimit(uint16_t port, uint32_t dir, uint32_t en, uint32_t rate) {
    return endpoint_set(__func__, {switch_port, port}, attribute_of(rate_attributes, dir),
                        {{en, 1}, {rate, port_rate_max}});
}

int32_t libvx_switchApi_portGetStormRateLimit(uint16_t port, uint32_t type, uint32_t dir, uint32_t *en,
                                              uint32_t *rate) {
    return endpoint_get(__func__, {switch_port, port}, storm_attribute(type, dir), {en, rate});
}

int32_t libvx_switchApi_portSetStormRateLimit(uint16_t port, uint32_t type, uint32_t dir, uint32_t en,
                                              uint32_t rate) {
    return endpoint_set(__func__, {switch_port, port}, storm_attribute(type, dir),
                        {{en, 1}, {rate, storm_rate_max}});
}

// ---- queues ----

int32_t libvx_switchApi_portGetQueue(uint16_t port, uint32_t *mode, uint8_t prio[LIBVX_QUEUES],
                                     uint8_t weight[LIBVX_QUEUES]) {
    return schedule_get(__func__, {switch_port, port}, mode, prio, weight);
}

int32_t libvx_switchApi_portSetQueue(uint16_t port, uint32_t mode, const uint8_t prio[LIBVX_QUEUES],
                                     const uint8_t weight[LIBVX_QUEUES]) {
    return schedule_set(__func__, {switch_port, port}, mode, prio, weight);
}

// ---- WAN ports: the PON and the CPU cannot be one ----

static const char *wan_attribute(uint16_t port) {
    return port <= LIBVX_SW_PORT_10G ? "wan" : nullptr;
}

int32_t libvx_switchApi_portGetWanPort(uint16_t port, uint8_t *iswan) {
    if (iswan == nullptr) {
        return LIBVX_RET_INVALID_PARAMETER;
    }
    uint32_t wan = *iswan;
    const int32_t result = endpoint_get(__func__, {switch_port, port}, wan_attribute(port), {&wan});
    if (result == LIBVX_RET_OK) {
        *iswan = static_cast<uint8_t>(wan);
    }
    return result;
}

int32_t libvx_switchApi_portSetWanPort(uint16_t port, uint8_t iswan) {
    return endpoint_set(__func__, {switch_port, port}, wan_attribute(port), {{iswan, 1}});
}

// ---- PHYs ----

// The map is a list of numbers, the first one for the first LAN port.
int32_t libvx_switchApi_ethPortNum2PhyPortNum(int32_t lanIndex) {
    int32_t phy = -1;
    board_call(__func__, [&](int) {
        char map[LIBVX_SYS_TEXT_SIZE] = {};
        const int32_t result = sysinfo_get("PhyPortMap", map);
        const char *number = map;
        for (int32_t i = 0; i < lanIndex && number != nullptr; i++) {
            number = strchr(number, ',');
            number = number != nullptr ? number + 1 : nullptr;
        }
        if (lanIndex >= 0 && number != nullptr && *number >= '0' && *number <= '9') {
            phy = static_cast<int32_t>(strtol(number, nullptr, 10));
        }
        return result;
    });
    return phy;
}

// Switch services: packets of well-known protocols. Limits are attributes in BOARD/switch/proto, the actions of a
// port are in its own directory.

#include "attr_numbers.h"
#include "board_call.h"
#include "endpoint.h"

#include <cstdio>
#include <iterator>

static constexpr uint32_t proto_rate_max = 2500000; // frames per second
static constexpr uint32_t action_max = 3;
static constexpr uint32_t all_protocols = 255;

// By the library's values.
static constexpr const char *protocols[] = {"dhcpbcast", "arp",    "icmpv4", "icmpv6", "igmp",    "mld",
                                            "pppoe",     "tcpack", "mcast",  "tcpsyn", "ieee1905"};
static constexpr const char *directions[] = {"egress", "ingress"};

struct proto_attribute {
    char text[32];

    proto_attribute(const char *first, const char *second) { snprintf(text, sizeof text, "%s_%s", first, second); }
};

// Calls `body(protocol)` for the protocol, or for each of them, until one fails.
template <typename body_t>
static int32_t for_protocols(uint32_t protocol, body_t body) {
    int32_t result = LIBVX_RET_INVALID_PARAMETER;
    for (uint32_t each = 0; each < std::size(protocols); each++) {
        if (protocol == each || protocol == all_protocols) {
            result = body(protocols[each]);
            if (result != LIBVX_RET_OK) {
                break;
            }
        }
    }
    return result;
}

// ---- limits ----

int32_t libvx_switchApi_GetProtoQueueLimit(uint32_t proto, uint32_t up, uint32_t *en, uint32_t *rate) {
    if (en == nullptr || rate == nullptr) {
        return LIBVX_RET_INVALID_PARAMETER;
    }
    return board_call(__func__, [=](int board) {
        if (proto >= std::size(protocols) || up >= std::size(directions)) {
            return LIBVX_RET_INVALID_PARAMETER;
        }
        const board_fd dir(dir_lock(board, "switch/proto"));
        uint64_t limit[2];
        if (dir.fd < 0 ||
            !attr_read_numbers(dir.fd, proto_attribute(protocols[proto], directions[up]).text, limit) ||
            limit[0] > UINT32_MAX || limit[1] > UINT32_MAX) {
            return LIBVX_RET_FILE_READ_FAIL;
        }
        *en = static_cast<uint32_t>(limit[0]);
        *rate = static_cast<uint32_t>(limit[1]);
        return LIBVX_RET_OK;
    });
}

int32_t libvx_switchApi_SetProtoQueueLimit(uint32_t proto, uint32_t en, uint32_t up, uint32_t rate) {
    return board_call(__func__, [=](int board) {
        if (up >= std::size(directions) || en > 1 || rate > proto_rate_max) {
            return int32_t{LIBVX_RET_INVALID_PARAMETER};
        }
        const board_fd dir(dir_lock(board, "switch/proto"));
        const uint32_t limit[] = {en, rate};
        return for_protocols(proto, [&](const char *name) {
            return attr_write_numbers(dir.fd, proto_attribute(name, directions[up]).text, limit)
                       ? LIBVX_RET_OK
                       : LIBVX_RET_FILE_WRITE_FAIL;
        });
    });
}

// ---- actions ----

int32_t libvx_switchApi_GetProtoAction(uint16_t port, uint32_t proto, uint32_t *action) {
    const bool known = proto < std::size(protocols);
    const proto_attribute attribute("proto", known ? protocols[proto] : "");
    return endpoint_get(__func__, {switch_port, port}, known ? attribute.text : nullptr, {action});
}

int32_t libvx_switchApi_SetProtoAction(uint16_t port, uint32_t proto, uint32_t action) {
    return board_call(__func__, [=](int board) {
        const board_fd dir(dir_lock(board, switch_port.directory));
        const bounded_number value = {action, action_max};
        return for_protocols(proto, [&](const char *name) {
            return endpoint_write(dir.fd, {switch_port, port}, proto_attribute("proto", name).text, {&value, 1});
        });
    });
}

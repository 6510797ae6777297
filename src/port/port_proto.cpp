#include "port/port_proto.h"

#include "libvx.h"
#include "port/port_index.h"
#include "vxcli.h"

#include <cstdio>
#include <cstring>

// ---- protocols ----

// By the library's values.
static constexpr const char *protoStr[] = {"dhcpbcast", "arp",    "icmpv4", "icmpv6", "igmp",    "mld",
                                           "pppoe",     "tcpack", "mcast",  "tcpsyn", "ieee1905"};

// The library's value for all of them: "show" where it sets something.
static constexpr uint32_t ALL_PROTOCOLS = 255;

static std::optional<uint32_t> find_protocol(const char *word) {
    return strcmp(word, "show") == 0 ? ALL_PROTOCOLS : find_name(protoStr, word);
}

struct protocol_range_s {
    uint32_t first;
    uint32_t end;
};

// What a query lists. All protocols come without ieee1905, the last one: scripts know ten of them.
static protocol_range_s listed(uint32_t protocol) {
    if (protocol == ALL_PROTOCOLS) {
        return {0, std::size(protoStr) - 1};
    }
    return {protocol, protocol + 1};
}

// ---- rate limits ----

static constexpr uint32_t PROTO_RATE_MAX = 1000000; // frames per second; the help text promises more

struct proto_direction_s {
    const char *name;
    uint32_t value; // the library's
};

static constexpr proto_direction_s DIRECTIONS[] = {{"ingress", 1}, {"egress", 0}};

// A limit that cannot be read prints as the one before it, the first one as zeros.
static void list_proto_limits(uint32_t protocol) {
    uint32_t en = 0;
    uint32_t rate = 0;
    const protocol_range_s range = listed(protocol);
    for (uint32_t each = range.first; each < range.end; each++) {
        for (const proto_direction_s &direction : DIRECTIONS) {
            libvx_switchApi_GetProtoQueueLimit(each, direction.value, &en, &rate);
            printf(" %-12s[%-7s]:en = %d, fps = %d \n", protoStr[each], direction.name, static_cast<int>(en),
                   static_cast<int>(rate));
        }
    }
}

int32_t port_config_proto_rate_limit(int32_t argc, const char *const argv[], const char *help) {
    const std::optional<uint32_t> protocol = find_protocol(argv[1]);
    if (!protocol) {
        // The word behind the protocol is named, and a missing one like this: it has always been so.
        show_bad_arguments(argc > 2 ? argv[2] : "(null)", help);
        return 1;
    }
    if (argc != 5) {
        list_proto_limits(*protocol);
        return 0;
    }
    const uint32_t up = word_to_decimal(argv[2]);
    const uint32_t en = word_to_decimal(argv[3]);
    const uint32_t rate = word_to_decimal(argv[4]);
    if (up > 1 || en > 1 || rate > PROTO_RATE_MAX) {
        show_bad_arguments(argv[3], help); // whichever of the three it was
        return 1;
    }
    libvx_switchApi_SetProtoQueueLimit(*protocol, en, up, rate);
    return 0;
}

// ---- actions ----

// By the library's values. A fifth value, which the library does not define, has always printed as the first
// protocol, and is meant to; only the values above it are unknown.
static constexpr const char *actionStr[] = {"fwd", "trap", "drop", "copy"};
static constexpr const char *SHOWN_ACTIONS[] = {actionStr[0], actionStr[1], actionStr[2], actionStr[3],
                                                protoStr[0]};

// An action that cannot be read prints as the one before it, the first one as 0.
static void list_proto_actions(int32_t index, uint32_t protocol) {
    printf(" Port%d: \n", index);
    uint32_t action = 0;
    const protocol_range_s range = listed(protocol);
    for (uint32_t each = range.first; each < range.end; each++) {
        libvx_switchApi_GetProtoAction(static_cast<uint16_t>(index), each, &action);
        printf("  %-12s action: %s \n", protoStr[each], name_of(SHOWN_ACTIONS, action));
    }
}

int32_t port_config_proto_action(int32_t argc, const char *const argv[], const char *help) {
    int32_t index = 0;
    if (!take_index(argv[1], PORT_OR_PON, help, &index)) {
        return 1;
    }
    const std::optional<uint32_t> protocol = argc > 2 ? find_protocol(argv[2]) : ALL_PROTOCOLS;
    if (!protocol) {
        show_bad_arguments(argv[2], help);
        return 1;
    }
    if (argc != 4) {
        list_proto_actions(index, *protocol);
        return 0;
    }
    uint32_t action = 0;
    if (!take_name(argv[3], actionStr, help, &action)) {
        return 1;
    }
    libvx_switchApi_SetProtoAction(static_cast<uint16_t>(index), *protocol, action);
    return 0;
}

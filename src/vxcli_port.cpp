// The switch port group: its command table and the commands about a port's switches.

#include "vxcli.h"

#include "common/arguments.h"
#include "common/queue_schedule.h"
#include "libvx.h"
#include "port/port_index.h"
#include "port/port_limit.h"
#include "port/port_link.h"
#include "port/port_proto.h"
#include "port/port_stats.h"

#include <cstdio>

// What comes of the operations below is not looked at; a value that cannot be read prints as 0.

static constexpr char TRAFFIC_EN[] = "traffic_en";
static constexpr char ADMIN[] = "admin";

// "INDEX [STATE]"; more words are a query like none. `name` is in front of the state where it is printed.
template <const char *name, int32_t (*get)(uint16_t, uint32_t *), int32_t (*set)(uint16_t, uint32_t)>
static int32_t port_config_state(int32_t argc, const char *const argv[], const char *help) {
    int32_t index = 0;
    if (!take_index(argv[1], PORT, help, &index)) {
        return 1;
    }
    uint32_t state = 0;
    if (argc != 3) {
        get(static_cast<uint16_t>(index), &state);
        printf("port %d\n", index);
        printf("%s %d\n", name, static_cast<int>(state));
        return 0;
    }
    if (!take_number(argv[2], 1, help, &state)) {
        return 1;
    }
    set(static_cast<uint16_t>(index), state);
    return 0;
}

static constexpr vxcli_handler_t port_config_trafficEn =
    port_config_state<TRAFFIC_EN, libvx_switchApi_portGetTrafficEn, libvx_switchApi_portSetTrafficEn>;
static constexpr vxcli_handler_t port_config_admin =
    port_config_state<ADMIN, libvx_switchApi_portGetAdmin, libvx_switchApi_portSetAdmin>;
static constexpr vxcli_handler_t port_config_qos =
    config_queue_schedule<PORT_OR_PON, libvx_switchApi_portGetQueue, libvx_switchApi_portSetQueue>;

static int32_t port_config_pause(int32_t argc, const char *const argv[], const char *help) {
    int32_t index = 0;
    if (!take_index(argv[1], PORT, help, &index)) {
        return 1;
    }
    const auto port = static_cast<uint16_t>(index);
    uint32_t tx = 0;
    uint32_t rx = 0;
    uint16_t pausetime = 0;
    if (argc != 4) {
        libvx_switchApi_portGetPause(port, &tx, &rx, &pausetime);
        printf("port %d\n", index);
        printf("pause tx %d\n", static_cast<int>(tx));
        printf("pause rx %d\n", static_cast<int>(rx));
        printf("pausetime %u\n", unsigned{pausetime});
        return 0;
    }
    if (!take_number(argv[2], 1, help, &tx) || !take_number(argv[3], 1, help, &rx)) {
        return 1;
    }
    libvx_switchApi_portSetPause(port, tx, rx, UINT16_MAX); // always the longest pause
    return 0;
}

// Takes whatever is typed: the library judges it.
static int32_t port_set_wan_port(int32_t, const char *const argv[], const char *) {
    libvx_switchApi_portSetWanPort(static_cast<uint16_t>(word_to_decimal(argv[1])),
                                   static_cast<uint8_t>(word_to_decimal(argv[2])));
    return 0;
}

// Ports that the library does not know are left out.
static int32_t port_get_wan_port(int32_t, const char *const[], const char *) {
    static constexpr uint16_t PORTS = 8;
    uint8_t iswan = 0;
    for (uint16_t port = 0; port < PORTS; port++) {
        if (libvx_switchApi_portGetWanPort(port, &iswan) == 0) {
            printf("port:%d     iswan:%d\n", int{port}, int{iswan});
        }
    }
    return 0;
}

// The help texts are kept to the letter, where they promise other bounds or name another command, too: they are
// listed by scripts.
constinit const vxcli_cmd_t port_cmds[] = {
    {"stats", port_get_stats, 1, "stats <index> : get port statistics"},
    {"status", port_get_status, 1, "status <index> : get port status"},
    {"trafficen", port_config_trafficEn, 1, "trafficen <index> [0|1] : get/set port traffic en state"},
    {"admin", port_config_admin, 1, "admin <index> [0|1] : get/set port admin state"},
    {"pause", port_config_pause, 1, "pause <index> [txval] [rxval] : get/set port pause state, val=0/1"},
    {"rate", port_config_rate_limit, 1,
     "rate <port index 0-5 or pon> [0|1(rx/tx)] [en:0|1] [0-2500000:rate(kbps)] : get/set port rate limit"},
    {"storm", port_config_storm_rate_limit, 1,
     "storm <port index 0-4 or pon> [broadcast|multicast|unicast] [en:0|1] [0-1024000:rate(pps)] : get/set port "
     "ingress storm rate limit"},
    {"qos", port_config_qos, 1,
     "qos <port index or pon> [sp|wrr|spwrr] [wrr0] [wrr1] [wrr2] [wrr3] [wrr4] [wrr5] [wrr6] [wrr7] [pri0] [pri1] "
     "[pri2] [pri3] [pri4] [pri5] [pri6] [pri7]: get/set port qos settings"},
    {"proto", port_config_proto_rate_limit, 1,
     "proto [dhcpbcast|arp|icmpv4|icmpv6|igmp|mld|pppoe|tcpack|mcast|tcpsyn|ieee1905|show] [up:0|1] [en:0|1] "
     "[0-2500000:rate(fps)] : get/set port protocol packet queue rate limit"},
    {"protoact", port_config_proto_action, 1,
     "protoact <port index or pon> "
     "[dhcpbcast|arp|icmpv4|icmpv6|igmp|mld|pppoe|tcpack|mcast|tcpsyn|ieee1905|show] [fwd|trap|drop|copy] : "
     "get/set port protocol packet action"},
    {"mode", port_config_mode, 3,
     "mode <port index 0-4> <speed auto|10M|100M|1000M|2500M> <duplex auto|half|full>: set port mode"},
    {"setwanport", port_set_wan_port, 2, "setwanport <portId: 0-3> <iswan: 0|1,0-disable 1-enable>: set wan port"},
    {"showwanport", port_get_wan_port, 0, "getwanport: get wan port status for ethwan"},
    {"reset", port_config_reset, 0, "reset <xfi port index,default is 5>: reset xfi port"},
    {nullptr, nullptr, 0, nullptr},
};

// The EPON group: its command table, the link's state and counters.

#include "vxcli.h"

#include "common/arguments.h"
#include "common/counters.h"
#include "common/queue_schedule.h"
#include "common/rate_limit.h"
#include "libvx.h"

#include <cstdio>

// ---- state and counters ----

static int32_t epon_get_status(int32_t, const char *const[], const char *) {
    const uint8_t los = libvx_ponApi_eponIsLosExisted();
    const uint32_t fec_mode = libvx_ponApi_eponGetFecMode();
    const uint8_t fec = libvx_ponApi_eponGetFecStatus();
    const uint8_t link = libvx_ponApi_eponGetRegStatus(0);
    printf("los = %d\n", int{los});
    printf("link = %d\n", int{link});
    printf("fecMode = %d\n", static_cast<int>(fec_mode));
    printf("fec = %d\n", int{fec});
    return 0;
}

using stats = libvx_pon_eponStats_s; // a name that cppcheck can parse &stats::... of

static constexpr counter_s<stats> COUNTERS[] = {
    {"dsDropEvents", &stats::dsDropEvents},
    {"usDropEvents", &stats::usDropEvents},
    {"dsOcts", &stats::dsOcts},
    {"usOcts", &stats::usOcts},
    {"dsPkts", &stats::dsPkts},
    {"usPkts", &stats::usPkts},
    {"dsBcastPkts", &stats::dsBcastPkts},
    {"usBcastPkts", &stats::usBcastPkts},
    {"dsBcastOcts", &stats::dsBcastOcts},
    {"dsMcastPkts", &stats::dsMcastPkts},
    {"usMcastPkts", &stats::usMcastPkts},
    {"dsMcastOcts", &stats::dsMcastOcts},
    {"dsCrcErrPkts", &stats::dsCrcErrPkts},
    {"usCrcErrPkts", &stats::usCrcErrPkts},
    {"dsUnderSzPkts", &stats::dsUnderSzPkts},
    {"usUnderSzPkts", &stats::usUnderSzPkts},
    {"dsOverSzPkts", &stats::dsOverSzPkts},
    {"usOverSzPkts", &stats::usOverSzPkts},
    {"dsFragments", &stats::dsFragments},
    {"usFragments", &stats::usFragments},
    {"dsJabbers", &stats::dsJabbers},
    {"usJabbers", &stats::usJabbers},
    {"dsPkts64", &stats::dsPkts64},
    {"dsPkts127", &stats::dsPkts127},
    {"dsPkts255", &stats::dsPkts255},
    {"dsPkts511", &stats::dsPkts511},
    {"dsPkts1023", &stats::dsPkts1023},
    {"dsPkts1518", &stats::dsPkts1518},
    {"usPkts64", &stats::usPkts64},
    {"usPkts127", &stats::usPkts127},
    {"usPkts255", &stats::usPkts255},
    {"usPkts511", &stats::usPkts511},
    {"usPkts1023", &stats::usPkts1023},
    {"usPkts1518", &stats::usPkts1518},
    {"dsDiscards", &stats::dsDiscards},
    {"usDiscards", &stats::usDiscards},
    {"dsDiscardOcts", &stats::dsDiscardOcts},
    {"usDiscardOcts", &stats::usDiscardOcts},
    {"dsErr", &stats::dsErr},
    {"usErr", &stats::usErr},
    {"statusChgTime", &stats::statusChgTime},
};
static_assert(counters_are_the_record(COUNTERS));

static int32_t epon_get_stats(int32_t, const char *const[], const char *) {
    stats values = {};
    libvx_ponApi_eponGetStats(&values);
    print_counters(values, COUNTERS);
    return 0;
}

// ---- switches, schedules and limits ----

static constexpr index_rule_s LLID = {"llid", accepts_below<libvx_sys_getLlidNum>};
static constexpr vxcli_handler_t epon_set_tx = config_enable<libvx_ponApi_eponOptTxCtl>;
static constexpr vxcli_handler_t epon_set_rx = config_enable<libvx_ponApi_eponOptRxCtl>;
static constexpr vxcli_handler_t epon_set_rogue_onu = config_enable<libvx_ponApi_eponSetRogueOnu>;
static constexpr vxcli_handler_t epon_config_qos =
    config_queue_schedule<LLID, libvx_ponApi_eponGetQueue, libvx_ponApi_eponSetQueue>;
static constexpr vxcli_handler_t epon_config_rate_limit =
    config_rate_limit<LLID, libvx_ponApi_eponGetLlidRateLimit, libvx_ponApi_eponSetLlidRateLimit>;
static constexpr vxcli_handler_t epon_config_queue_rate_limit =
    config_queue_rate_limit<LLID, libvx_ponApi_eponGetQueueRateLimit, libvx_ponApi_eponSetQueueRateLimit>;

// ---- the table ----

// The ranges in the help texts are hints: the library counts the LLIDs and the queues.
constinit const vxcli_cmd_t epon_cmds[] = {
    {"tx", epon_set_tx, 1, "tx <0|1> : disable/enable tx"},
    {"rx", epon_set_rx, 1, "rx <0|1> : disable/enable rx"},
    {"status", epon_get_status, 0, "status : get current status"},
    {"stats", epon_get_stats, 0, "stats : get statistics"},
    {"rogue", epon_set_rogue_onu, 1, "rogue <0|1> : disable/enable rogue onu"},
    {"qos", epon_config_qos, 1,
     "qos <llid:0-7> [sp|wrr|spwrr] [wrr0] [wrr1] [wrr2] [wrr3] [wrr4] [wrr5] [wrr6] [wrr7] [pri0] [pri1] [pri2] "
     "[pri3] [pri4] [pri5] [pri6] [pri7]: get/set port qos settings"},
    {"rate", epon_config_rate_limit, 1,
     "rate <llid:0-7> [en:0|1] [0-1024000:rate(kbps)] : get/set llid rate limit"},
    {"qrate", epon_config_queue_rate_limit, 2,
     "qrate <llid:0-7> <queueId:0-7> [en:0|1] [0-1024000:rate(kbps)] : get/set queue rate limit"},
    {nullptr, nullptr, 0, nullptr},
};

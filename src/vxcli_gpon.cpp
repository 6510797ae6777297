// The GPON group: its command table, the link's state and counters.

#include "vxcli.h"

#include "common/arguments.h"
#include "common/counters.h"
#include "common/queue_schedule.h"
#include "common/rate_limit.h"
#include "libvx.h"

#include <algorithm>
#include <cstdio>

// ---- state and counters ----

// Only the initial state and the emergency stop can be forced.
static constexpr uint32_t STATE_INITIAL = 1;
static constexpr uint32_t STATE_EMERGENCY_STOP = 7;

static int32_t gpon_state(int32_t argc, const char *const argv[], const char *help) {
    if (argc == 1) {
        printf("gpon state O%d\n", libvx_ponApi_gponGetPonStaus());
        return 0;
    }
    if (argc > 2) {
        return 0; // a word too many: nothing is done and nothing said, and it is meant so
    }
    const uint32_t state = word_to_decimal(argv[1]);
    if (state != STATE_INITIAL && state != STATE_EMERGENCY_STOP) {
        show_bad_arguments(argv[1], help);
        return 1;
    }
    libvx_ponApi_gponSetPonStaus(static_cast<int32_t>(state));
    return 0;
}

static int32_t gpon_get_status(int32_t, const char *const[], const char *) {
    const int32_t state = libvx_ponApi_gponGetPonStaus();
    const int32_t los = libvx_ponApi_gponGetLosStatus();
    const int32_t fec = libvx_ponApi_gponGetFecStatus();
    printf("los = %d\n", los);
    printf("state = O%d\n", state);
    printf("fec = %d\n", fec);
    return 0;
}

using stats = libvx_pon_gponStats_s; // a name that cppcheck can parse &stats::... of

// Not the order of the record: stations know the lines in this one.
static constexpr counter_s<stats> COUNTERS[] = {
    {"dsDropEvents", &stats::dsDropEvents},
    {"usDropEvents", &stats::usDropEvents},
    {"dsOcts", &stats::dsOcts},
    {"usOcts", &stats::usOcts},
    {"dsPkts", &stats::dsPkts},
    {"usPkts", &stats::usPkts},
    {"dsBcastOcts", &stats::dsBcastOcts},
    {"dsBcastPkts", &stats::dsBcastPkts},
    {"usBcastPkts", &stats::usBcastPkts},
    {"dsMcastPkts", &stats::dsMcastPkts},
    {"dsMcastOcts", &stats::dsMcastOcts},
    {"usMcastPkts", &stats::usMcastPkts},
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
    {"dsPkts_l64", &stats::dsPkts_l64},
    {"dsPkts_64_127", &stats::dsPkts_64_127},
    {"dsPkts_128_255", &stats::dsPkts_128_255},
    {"dsPkts_256_511", &stats::dsPkts_256_511},
    {"dsPkts_512_1023", &stats::dsPkts_512_1023},
    {"dsPkts_1024_1518", &stats::dsPkts_1024_1518},
    {"usPkts_l64", &stats::usPkts_l64},
    {"usPkts_64_127", &stats::usPkts_64_127},
    {"usPkts_128_255", &stats::usPkts_128_255},
    {"usPkts_256_511", &stats::usPkts_256_511},
    {"usPkts_512_1023", &stats::usPkts_512_1023},
    {"usPkts_1024_1518", &stats::usPkts_1024_1518},
    {"dsDiscards", &stats::dsDiscards},
    {"dsDiscardOcts", &stats::dsDiscardOcts},
    {"usDiscards", &stats::usDiscards},
    {"usDiscardOcts", &stats::usDiscardOcts},
    {"dsErr", &stats::dsErr},
    {"usErr", &stats::usErr},
    {"fecErr", &stats::fecErr},
    {"hecErr", &stats::hecErr},
    {"bipErr", &stats::bipErr},
    {"frmCnt", &stats::frmCnt},
};

// Every counter has one line but the last four of the record, which are those of the GEM frames.
static consteval bool only_gem_counters_are_left_out() {
    const auto row_of = counter_rows(COUNTERS);
    const auto *const gem = row_of.begin() + std::size(COUNTERS);
    return row_of.size() == std::size(COUNTERS) + 4 && std::find(row_of.begin(), gem, 0U) == gem;
}
static_assert(only_gem_counters_are_left_out());

static int32_t gpon_get_stats(int32_t, const char *const[], const char *) {
    stats values = {};
    libvx_ponApi_gponGetStats(&values);
    print_counters(values, COUNTERS);
    return 0;
}

// ---- switches, schedules and limits ----

static constexpr index_rule_s TCONT = {"tcont", accepts_below<libvx_sys_getTcontNum>};
static constexpr vxcli_handler_t gpon_set_tx = config_enable<libvx_ponApi_gponOptTxCtl>;
static constexpr vxcli_handler_t gpon_set_rx = config_enable<libvx_ponApi_gponOptRxCtl>;
static constexpr vxcli_handler_t gpon_set_rogue_onu = config_enable<libvx_ponApi_gponSetRogueOnu>;
static constexpr vxcli_handler_t gpon_config_qos =
    config_queue_schedule<TCONT, libvx_ponApi_gponGetQueue, libvx_ponApi_gponSetQueue>;
static constexpr vxcli_handler_t gpon_config_rate_limit =
    config_rate_limit<TCONT, libvx_ponApi_gponGetTcontRateLimit, libvx_ponApi_gponSetTcontRateLimit>;
static constexpr vxcli_handler_t gpon_config_queue_rate_limit =
    config_queue_rate_limit<TCONT, libvx_ponApi_gponGetQueueRateLimit, libvx_ponApi_gponSetQueueRateLimit>;

// ---- the table ----

constinit const vxcli_cmd_t gpon_cmds[] = {
    {"tx", gpon_set_tx, 1, "tx <0|1> : disable/enable tx"},
    {"rx", gpon_set_rx, 1, "rx <0|1> : disable/enable rx"},
    {"state", gpon_state, 0, "state [1|7] : get/set gpon state"},
    {"status", gpon_get_status, 0, "status  : get gpon status"},
    {"stats", gpon_get_stats, 0, "stats  : get gpon statistics"},
    {"rogue", gpon_set_rogue_onu, 1, "rogue <0|1> : disable/enable rogue onu"},
    {"qos", gpon_config_qos, 1,
     "qos <tcont> [sp|wrr|spwrr] [wrr0] [wrr1] [wrr2] [wrr3] [wrr4] [wrr5] [wrr6] [wrr7] [pri0] [pri1] [pri2] "
     "[pri3] "
     "[pri4] [pri5] [pri6] [pri7]: get/set port qos settings"},
    {"rate", gpon_config_rate_limit, 1, "rate <tcont> [en:0|1] [0-1024000:rate(kbps)] : get/set tcont rate limit"},
    {"qrate", gpon_config_queue_rate_limit, 2,
     "qrate <tcont> <queueId:0-7> [en:0|1] [0-1024000:rate(kbps)] : get/set queue rate limit"},
    {nullptr, nullptr, 0, nullptr},
};

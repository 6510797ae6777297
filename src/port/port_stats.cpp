#include "port/port_stats.h"

#include "common/counters.h"
#include "libvx.h"
#include "port/port_index.h"

using stats = libvx_switch_ctcPmData_s; // a name that cppcheck can parse &stats::... of

static constexpr counter_s<stats> COUNTERS[] = {
    {"dsDropEvents", &stats::dsDropEvents},
    {"usDropEvents", &stats::usDropEvents},
    {"dsOcts", &stats::dsOcts},
    {"usOcts", &stats::usOcts},
    {"dsPkts", &stats::dsPkts},
    {"usPkts", &stats::usPkts},
    {"dsBcastPkts", &stats::dsBcastPkts},
    {"usBcastPkts", &stats::usBcastPkts},
    {"dsMcastPkts", &stats::dsMcastPkts},
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
    {"dsPkts64", &stats::dsPkts64},
    {"dsPkts_64_127", &stats::dsPkts_64_127},
    {"dsPkts_128_255", &stats::dsPkts_128_255},
    {"dsPkts_256_511", &stats::dsPkts_256_511},
    {"dsPkts_512_1023", &stats::dsPkts_512_1023},
    {"dsPkts_1024_1518", &stats::dsPkts_1024_1518},
    {"usPkts64", &stats::usPkts64},
    {"usPkts_64_127", &stats::usPkts_64_127},
    {"usPkts_128_255", &stats::usPkts_128_255},
    {"usPkts_256_511", &stats::usPkts_256_511},
    {"usPkts_512_1023", &stats::usPkts_512_1023},
    {"usPkts_1024_1518", &stats::usPkts_1024_1518},
    {"dsDiscards", &stats::dsDiscards},
    {"usDiscards", &stats::usDiscards},
    {"dsErr", &stats::dsErr},
    {"usErr", &stats::usErr},
    {"statusChgTime", &stats::statusChgTime},
};
static_assert(counters_are_the_record(COUNTERS));

int32_t port_get_stats(int32_t, const char *const argv[], const char *help) {
    int32_t index = 0;
    if (!take_index(argv[1], PORT, help, &index)) {
        return 1;
    }
    stats values = {};
    libvx_switchApi_ethGetPmData(static_cast<uint8_t>(index), &values);
    print_counters(values, COUNTERS);
    return 0;
}

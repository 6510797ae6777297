// PON services: the EPON link, as attributes under BOARD/pon/epon.

#include "attr_numbers.h"
#include "board_call.h"
#include "endpoint.h"

static constexpr char epon_directory[] = "pon/epon";

int32_t libvx_sys_getLlidNum(void) {
    return static_cast<int32_t>(number_get(__func__, epon_directory, "llids", UINT16_MAX));
}

int32_t libvx_sys_getQueueNumPerLlidTcont(void) {
    return static_cast<int32_t>(number_get(__func__, "pon", "queues", UINT16_MAX));
}

// ---- the link ----

uint8_t libvx_ponApi_eponOptTxCtl(uint8_t enable) {
    return static_cast<uint8_t>(flag_set(__func__, epon_directory, "tx", enable));
}

uint8_t libvx_ponApi_eponOptRxCtl(uint8_t enable) {
    return static_cast<uint8_t>(flag_set(__func__, epon_directory, "rx", enable));
}

uint8_t libvx_ponApi_eponSetRogueOnu(uint32_t enable) {
    return static_cast<uint8_t>(flag_set(__func__, epon_directory, "rogue", enable));
}

uint8_t libvx_ponApi_eponIsLosExisted(void) {
    return static_cast<uint8_t>(number_get(__func__, epon_directory, "los", UINT8_MAX));
}

uint32_t libvx_ponApi_eponGetFecMode(void) {
    return number_get(__func__, epon_directory, "fec_mode", UINT32_MAX);
}

uint8_t libvx_ponApi_eponGetFecStatus(void) {
    return static_cast<uint8_t>(number_get(__func__, epon_directory, "fec", UINT8_MAX));
}

// There is only one link.
uint8_t libvx_ponApi_eponGetRegStatus(uint8_t link) {
    return static_cast<uint8_t>(number_get(__func__, epon_directory, "link", link == 0 ? UINT8_MAX : 0));
}

static constexpr char counters[] =
    "dsDropEvents usDropEvents dsOcts usOcts dsPkts usPkts dsBcastPkts usBcastPkts dsBcastOcts dsMcastPkts "
    "usMcastPkts dsMcastOcts dsCrcErrPkts usCrcErrPkts dsUnderSzPkts usUnderSzPkts dsOverSzPkts usOverSzPkts "
    "dsFragments usFragments dsJabbers usJabbers dsPkts64 dsPkts127 dsPkts255 dsPkts511 dsPkts1023 dsPkts1518 "
    "usPkts64 usPkts127 usPkts255 usPkts511 usPkts1023 usPkts1518 dsDiscards usDiscards dsDiscardOcts "
    "usDiscardOcts dsErr usErr statusChgTime";
static_assert(counter_names(counters) == sizeof(libvx_pon_eponStats_t) / sizeof(uint64_t));

void libvx_ponApi_eponGetStats(libvx_pon_eponStats_t *stats) {
    if (stats == nullptr) {
        return;
    }
    board_call(__func__, [stats](int board) {
        const board_fd dir(dir_lock(board, epon_directory));
        return counters_read_record(dir.fd, "stats", counters, stats) ? LIBVX_RET_OK : LIBVX_RET_FILE_READ_FAIL;
    });
}

// ---- LLIDs ----

int32_t libvx_ponApi_eponGetQueue(uint16_t llid, uint32_t *mode, uint8_t prio[LIBVX_QUEUES],
                                  uint8_t weight[LIBVX_QUEUES]) {
    return schedule_get(__func__, {epon_llid, llid}, mode, prio, weight);
}

int32_t libvx_ponApi_eponSetQueue(uint16_t llid, uint16_t mode, const uint8_t prio[LIBVX_QUEUES],
                                  const uint8_t weight[LIBVX_QUEUES]) {
    return schedule_set(__func__, {epon_llid, llid}, mode, prio, weight);
}

int32_t libvx_ponApi_eponGetLlidRateLimit(uint16_t llid, uint32_t *en, uint32_t *rate) {
    return upstream_get(__func__, {epon_llid, llid}, en, rate);
}

int32_t libvx_ponApi_eponSetLlidRateLimit(uint16_t llid, uint32_t en, uint32_t rate) {
    return upstream_set(__func__, {epon_llid, llid}, en, rate);
}

int32_t libvx_ponApi_eponGetQueueRateLimit(uint16_t llid, uint16_t queue, uint32_t *en, uint32_t *rate) {
    return queue_upstream_get(__func__, {epon_llid, llid}, queue, en, rate);
}

int32_t libvx_ponApi_eponSetQueueRateLimit(uint16_t llid, uint16_t queue, uint32_t en, uint32_t rate) {
    return queue_upstream_set(__func__, {epon_llid, llid}, queue, en, rate);
}

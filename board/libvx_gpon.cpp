// PON services: the GPON link, as attributes under BOARD/pon/gpon.

#include "attr_numbers.h"
#include "board_call.h"
#include "endpoint.h"

static constexpr char gpon_directory[] = "pon/gpon";

int32_t libvx_sys_getTcontNum(void) {
    return static_cast<int32_t>(number_get(__func__, gpon_directory, "tconts", UINT16_MAX));
}

// ---- the link ----

uint8_t libvx_ponApi_gponOptTxCtl(uint8_t enable) {
    return static_cast<uint8_t>(flag_set(__func__, gpon_directory, "tx", enable));
}

uint8_t libvx_ponApi_gponOptRxCtl(uint8_t enable) {
    return static_cast<uint8_t>(flag_set(__func__, gpon_directory, "rx", enable));
}

int32_t libvx_ponApi_gponSetRogueOnu(int32_t enable) {
    return flag_set(__func__, gpon_directory, "rogue", static_cast<uint32_t>(enable));
}

int32_t libvx_ponApi_gponGetPonStaus(void) {
    return static_cast<int32_t>(number_get(__func__, gpon_directory, "state", INT32_MAX));
}

int32_t libvx_ponApi_gponSetPonStaus(int32_t state) {
    return board_call(__func__, [state](int board) {
        if (state != 1 && state != 7) {
            return LIBVX_RET_INVALID_PARAMETER;
        }
        const bool ok = attr_set_number(board, gpon_directory, "state", static_cast<uint32_t>(state));
        return ok ? LIBVX_RET_OK : LIBVX_RET_FILE_WRITE_FAIL;
    });
}

int32_t libvx_ponApi_gponGetLosStatus(void) {
    return static_cast<int32_t>(number_get(__func__, gpon_directory, "los", INT32_MAX));
}

int32_t libvx_ponApi_gponGetFecStatus(void) {
    return static_cast<int32_t>(number_get(__func__, gpon_directory, "fec", INT32_MAX));
}

static constexpr char counters[] =
    "dsDropEvents usDropEvents dsOcts usOcts dsPkts usPkts dsBcastPkts usBcastPkts dsBcastOcts dsMcastOcts "
    "dsMcastPkts usMcastPkts dsCrcErrPkts usCrcErrPkts dsUnderSzPkts usUnderSzPkts dsOverSzPkts usOverSzPkts "
    "dsFragments usFragments dsJabbers usJabbers dsPkts_l64 dsPkts_64_127 dsPkts_128_255 dsPkts_256_511 "
    "dsPkts_512_1023 dsPkts_1024_1518 usPkts_l64 usPkts_64_127 usPkts_128_255 usPkts_256_511 usPkts_512_1023 "
    "usPkts_1024_1518 dsDiscards usDiscards dsDiscardOcts usDiscardOcts dsErr usErr fecErr hecErr bipErr frmCnt "
    "dsGemCnt dsGemPlCnt usGemCnt usGemPlCnt";
static_assert(counter_names(counters) == sizeof(libvx_pon_gponStats_t) / sizeof(uint64_t));

int32_t libvx_ponApi_gponGetStats(libvx_pon_gponStats_t *stats) {
    if (stats == nullptr) {
        return LIBVX_RET_INVALID_PARAMETER;
    }
    return board_call(__func__, [stats](int board) {
        const board_fd dir(dir_lock(board, gpon_directory));
        return counters_read_record(dir.fd, "stats", counters, stats) ? LIBVX_RET_OK : LIBVX_RET_FILE_READ_FAIL;
    });
}

// ---- T-CONTs ----

int32_t libvx_ponApi_gponGetQueue(uint16_t tcont, uint32_t *mode, uint8_t prio[LIBVX_QUEUES],
                                  uint8_t weight[LIBVX_QUEUES]) {
    return schedule_get(__func__, {gpon_tcont, tcont}, mode, prio, weight);
}

int32_t libvx_ponApi_gponSetQueue(uint16_t tcont, uint16_t mode, const uint8_t prio[LIBVX_QUEUES],
                                  const uint8_t weight[LIBVX_QUEUES]) {
    return schedule_set(__func__, {gpon_tcont, tcont}, mode, prio, weight);
}

int32_t libvx_ponApi_gponGetTcontRateLimit(uint16_t tcont, uint32_t *en, uint32_t *rate) {
    return upstream_get(__func__, {gpon_tcont, tcont}, en, rate);
}

int32_t libvx_ponApi_gponSetTcontRateLimit(uint16_t tcont, uint32_t en, uint32_t rate) {
    return upstream_set(__func__, {gpon_tcont, tcont}, en, rate);
}

int32_t libvx_ponApi_gponGetQueueRateLimit(uint16_t tcont, uint16_t queue, uint32_t *en, uint32_t *rate) {
    return queue_upstream_get(__func__, {gpon_tcont, tcont}, queue, en, rate);
}

int32_t libvx_ponApi_gponSetQueueRateLimit(uint16_t tcont, uint16_t queue, uint32_t en, uint32_t rate) {
    return queue_upstream_set(__func__, {gpon_tcont, tcont}, queue, en, rate);
}

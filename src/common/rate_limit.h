// Rate limits: the words that they are set with, the lines that they are printed as, and the two commands that the
// PON groups share. What comes of a set operation is not looked at; a limit that cannot be read prints as zeros.
#ifndef VXCLI_COMMON_RATE_LIMIT_H
#define VXCLI_COMMON_RATE_LIMIT_H

#include "common/arguments.h"
#include "libvx.h"

#include <cstdint>
#include <cstdio>

struct rate_limit_s {
    uint32_t en;
    uint32_t rate; // in the command's unit
};

// The largest upstream rate that can be set, in kbps.
inline constexpr uint32_t UPSTREAM_RATE_MAX = 1024000;

// Takes the enable word and the rate word behind it. False after the report of the first one out of bounds.
bool take_rate_limit(const char *const words[], uint32_t max_rate, const char *help, rate_limit_s *limit);

// `what` is the limit's direction and kind: "tx", "rx broadcast".
void print_rate_limit(const char *what, const rate_limit_s &limit, const char *unit);

// The handler of "INDEX [EN RATE]". Only both words make it a set: with EN alone it prints.
template <const index_rule_s &rule, auto get, auto set>
int32_t config_rate_limit(int32_t argc, const char *const argv[], const char *help) {
    int32_t index = 0;
    if (!take_index(argv[1], rule, help, &index)) {
        return 1;
    }
    rate_limit_s limit = {};
    if (argc != 4) {
        get(static_cast<uint16_t>(index), &limit.en, &limit.rate);
        printf("%s %d\n", rule.name, index);
        print_rate_limit("tx", limit, "kbps");
        return 0;
    }
    if (!take_rate_limit(&argv[2], UPSTREAM_RATE_MAX, help, &limit)) {
        return 1;
    }
    set(static_cast<uint16_t>(index), limit.en, limit.rate);
    return 0;
}

// The queues of an LLID or a T-CONT.
inline constexpr index_rule_s QUEUE = {"queue", accepts_below<libvx_sys_getQueueNumPerLlidTcont>};

// The handler of "INDEX QUEUE [EN RATE]".
template <const index_rule_s &rule, auto get, auto set>
int32_t config_queue_rate_limit(int32_t argc, const char *const argv[], const char *help) {
    int32_t index = 0;
    int32_t queue = 0;
    if (!take_index(argv[1], rule, help, &index) || !take_index(argv[2], QUEUE, help, &queue)) {
        return 1;
    }
    rate_limit_s limit = {};
    if (argc != 5) {
        get(static_cast<uint16_t>(index), static_cast<uint16_t>(queue), &limit.en, &limit.rate);
        printf("%s %d  %s %d\n", rule.name, index, QUEUE.name, queue);
        print_rate_limit("tx", limit, "kbps");
        return 0;
    }
    if (!take_rate_limit(&argv[3], UPSTREAM_RATE_MAX, help, &limit)) {
        return 1;
    }
    set(static_cast<uint16_t>(index), static_cast<uint16_t>(queue), limit.en, limit.rate);
    return 0;
}

#endif

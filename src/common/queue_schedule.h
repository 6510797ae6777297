// Queue scheduling of an LLID, a T-CONT or a switch port: one grammar and one listing for all of them.
#ifndef VXCLI_COMMON_QUEUE_SCHEDULE_H
#define VXCLI_COMMON_QUEUE_SCHEDULE_H

#include "common/arguments.h"
#include "libvx.h"

#include <cstdint>
#include <cstdio>

struct queue_schedule_s {
    uint32_t mode; // a libvx_pon_queue_types when it was taken from words; from the library, any number
    uint8_t prio[LIBVX_QUEUES];
    uint8_t weight[LIBVX_QUEUES];
};

// Takes the mode word, argv[2], and the words that belong to the mode. False after a report.
bool take_queue_schedule(int32_t argc, const char *const argv[], const char *help, queue_schedule_s *schedule);

void print_queue_schedule(const queue_schedule_s &schedule);

// The handler of "INDEX [MODE [WEIGHTS [PRIORITIES]]]". What comes of the operations is not looked at: a schedule
// that cannot be read prints as zeros.
template <const index_rule_s &rule, auto get, auto set>
int32_t config_queue_schedule(int32_t argc, const char *const argv[], const char *help) {
    int32_t index = 0;
    if (!take_index(argv[1], rule, help, &index)) {
        return 1;
    }
    queue_schedule_s schedule = {};
    if (argc <= 2) {
        printf("%s %d\n", rule.name, index);
        get(static_cast<uint16_t>(index), &schedule.mode, schedule.prio, schedule.weight);
        print_queue_schedule(schedule);
        return 0;
    }
    if (!take_queue_schedule(argc, argv, help, &schedule)) {
        return 1;
    }
    set(static_cast<uint16_t>(index), static_cast<uint16_t>(schedule.mode), schedule.prio, schedule.weight);
    return 0;
}

#endif

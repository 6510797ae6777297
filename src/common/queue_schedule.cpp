#include "common/queue_schedule.h"

#include "vxcli.h"

// By the value of the mode.
static constexpr const char *qosModeStr[] = {"sp", "wrr", "spwrr"};

// How many words a command of each mode has, the command word, the index and the mode among them.
static constexpr int32_t MODE_WORDS[] = {3, 3 + LIBVX_QUEUES, 3 + 2 * LIBVX_QUEUES};

// Bytes wrap: 300 is 44.
static void take_bytes(const char *const words[], uint8_t (&bytes)[LIBVX_QUEUES]) {
    for (uint8_t &byte : bytes) {
        byte = static_cast<uint8_t>(word_to_decimal(*words++));
    }
}

// Strict priority has no words of its own: the library is given these tables as they stand.
static void fill_strict(queue_schedule_s *schedule) {
    for (uint8_t i = 0; i < LIBVX_QUEUES; i++) {
        schedule->prio[i] = i;
        schedule->weight[i] = 10;
    }
}

bool take_queue_schedule(int32_t argc, const char *const argv[], const char *help, queue_schedule_s *schedule) {
    uint32_t mode = 0;
    if (!take_name(argv[2], qosModeStr, help, &mode)) {
        return false;
    }
    if (argc != MODE_WORDS[mode]) {
        // Only a surplus word behind "sp" is named.
        show_bad_arguments(mode == LIBVX_PON_QUEUE_SP ? argv[3] : "", help);
        return false;
    }
    *schedule = {.mode = mode, .prio = {}, .weight = {}};
    if (mode == LIBVX_PON_QUEUE_SP) {
        fill_strict(schedule);
        return true;
    }
    take_bytes(&argv[3], schedule->weight);
    if (mode == LIBVX_PON_QUEUE_SP_WRR) {
        take_bytes(&argv[3 + LIBVX_QUEUES], schedule->prio);
    }
    return true;
}

void print_queue_schedule(const queue_schedule_s &schedule) {
    printf("qos mod = %s\n", name_of(qosModeStr, schedule.mode));
    for (int i = 0; i < LIBVX_QUEUES; i++) {
        printf("Queue %d:  prio %d weight %d\n", i, int{schedule.prio[i]}, int{schedule.weight[i]});
    }
}

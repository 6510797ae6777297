// What a trace comes to: transfers, waits and the time on the bus.
#ifndef TRACE_SUMS_H
#define TRACE_SUMS_H

#include "trace_line.h"

#include <cstddef>
#include <cstdint>
#include <string_view>

inline constexpr size_t trace_outcomes = 7; // ways in which a transfer fails

struct trace_sums {
    int64_t first_us;
    int64_t last_us;
    uint64_t lines;
    uint64_t writes;
    uint64_t reads;
    uint64_t written; // bytes
    uint64_t read;
    uint64_t failed[trace_outcomes];
    uint64_t bits;
    uint64_t waits;
    int64_t waited_us;
    uint64_t pauses;
    int64_t paused_us;
    uint64_t damaged;
    uint64_t first_damaged; // its line number
};

void count_transfer(trace_sums *sums, const traced_transfer &transfer);

// What the word for the outcome of a failed transfer means.
const char *outcome_means(std::string_view word);

void print_seconds(int64_t us, int width);
void print_sums(const trace_sums &sums);

#endif

#include "trace_sums.h"

#include <cstdio>
#include <iterator>

// Why a transfer failed, and whether the bus saw anything of it. The last row stands for all others.
struct outcome_row {
    const char *word;
    const char *means;
    bool on_bus;
};

static constexpr outcome_row outcomes[] = {
    {"nak", "nothing there acknowledged it", true},
    {"busy", "the chip was still writing", true},
    {"fault", "a rule of the board's faults struck", true},
    {"missing", "the bus is not there", false},
    {"denied", "no permission for the bus", false},
    {"refused", "the bus adapter cannot do it", false},
    {"other", "failed", false},
};
static_assert(std::size(outcomes) == trace_outcomes);

static size_t find_outcome(std::string_view word) {
    size_t row = 0;
    while (row < std::size(outcomes) - 1 && word != outcomes[row].word) {
        row++;
    }
    return row;
}

const char *outcome_means(std::string_view word) {
    return outcomes[find_outcome(word)].means;
}

// Every byte on the bus has nine bits, the acknowledge included; start and stop count as one each.
static uint64_t bus_bits(const traced_transfer &transfer) {
    if (transfer.outcome != "ok") {
        return outcomes[find_outcome(transfer.outcome)].on_bus ? 1 + 9 + 1 : 0;
    }
    const uint64_t data = uint64_t{9} * transfer.length;
    return transfer.write ? 1 + 9 + 9 + data + 1 : 1 + 9 + 9 + 1 + 9 + data + 1;
}

void count_transfer(trace_sums *sums, const traced_transfer &transfer) {
    sums->bits += bus_bits(transfer);
    if (transfer.outcome != "ok") {
        sums->failed[find_outcome(transfer.outcome)]++;
    } else if (transfer.write) {
        sums->writes++;
        sums->written += transfer.length;
    } else {
        sums->reads++;
        sums->read += transfer.length;
    }
}

void print_seconds(int64_t us, int width) {
    const uint64_t size = static_cast<uint64_t>(us < 0 ? -us : us);
    char text[32];
    snprintf(text, sizeof text, "%s%llu.%06llu", us < 0 ? "-" : "",
             static_cast<unsigned long long>(size / 1'000'000), static_cast<unsigned long long>(size % 1'000'000));
    printf("%*s", width, text);
}

static void print_bus_time(uint64_t bits, uint64_t kilohertz) {
    const uint64_t us = (bits * 1000 + kilohertz / 2) / kilohertz;
    printf("%llu.%03llu ms at %llu kHz, ", static_cast<unsigned long long>(us / 1000),
           static_cast<unsigned long long>(us % 1000), static_cast<unsigned long long>(kilohertz));
}

static void print_count(const char *what, uint64_t count) {
    printf("%-8s %8llu", what, static_cast<unsigned long long>(count));
}

void print_sums(const trace_sums &sums) {
    putchar('\n');
    print_count("lines", sums.lines);
    printf(" in ");
    print_seconds(sums.last_us - sums.first_us, 0);
    printf(" s\n");
    print_count("writes", sums.writes);
    printf(" of %llu bytes\n", static_cast<unsigned long long>(sums.written));
    print_count("reads", sums.reads);
    printf(" of %llu bytes\n", static_cast<unsigned long long>(sums.read));
    uint64_t failed = 0;
    for (const uint64_t count : sums.failed) {
        failed += count;
    }
    print_count("failed", failed);
    const char *sign = ": ";
    for (size_t i = 0; i < std::size(outcomes); i++) {
        if (sums.failed[i] != 0) {
            printf("%s%llu %s", sign, static_cast<unsigned long long>(sums.failed[i]), outcomes[i].word);
            sign = ", ";
        }
    }
    putchar('\n');
    print_count("waits", sums.waits);
    printf(" of ");
    print_seconds(sums.waited_us, 0);
    printf(" s\n");
    print_count("pauses", sums.pauses);
    printf(" of ");
    print_seconds(sums.paused_us, 0);
    printf(" s\n");
    printf("bus time ");
    print_bus_time(sums.bits, 100);
    print_bus_time(sums.bits, 400);
    printf("%llu bits\n", static_cast<unsigned long long>(sums.bits));
}

// Counter records of the library as tables of names and members, in the order in which they are printed.
#ifndef VXCLI_COMMON_COUNTERS_H
#define VXCLI_COMMON_COUNTERS_H

#include <algorithm>
#include <array>
#include <bit>
#include <cinttypes>
#include <cstddef>
#include <cstdint>
#include <cstdio>

template <typename record_t>
struct counter_s {
    char name[18]; // held in the row: more than a hundred pointers would cost the loader as many relocations
    uint64_t record_t::*member;
};

template <typename record_t, size_t count>
void print_counters(const record_t &record, const counter_s<record_t> (&rows)[count]) {
    for (const counter_s<record_t> &row : rows) {
        printf("%s = %" PRIu64 "\n", row.name, record.*row.member);
    }
}

// For checks of a table: by counter, in the order of the record, the row that it is printed by, counted from 1; 0
// for a counter that is not printed.
template <typename record_t, size_t count>
constexpr auto counter_rows(const counter_s<record_t> (&rows)[count]) {
    record_t row_of = {};
    for (uint64_t i = 0; i < count; i++) {
        row_of.*rows[i].member = i + 1;
    }
    return std::bit_cast<std::array<uint64_t, sizeof(record_t) / sizeof(uint64_t)>>(row_of);
}

// For checks of a table: whether it is the whole record, counter by counter.
template <typename record_t, size_t count>
consteval bool counters_are_the_record(const counter_s<record_t> (&rows)[count]) {
    const auto row_of = counter_rows(rows);
    return row_of.size() == count && row_of.front() == 1 && std::ranges::is_sorted(row_of);
}

#endif

// Attributes of several numbers, and counters: decimal, separated by blanks or line ends.
#ifndef ATTR_NUMBERS_H
#define ATTR_NUMBERS_H

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <span>

// Reads an attribute of exactly so many numbers, 64 bits each. A missing or empty one counts as zeros; false for
// anything else. `name` may be a path.
bool attr_read_numbers(int dir, const char *name, std::span<uint64_t> numbers);

// Sets an attribute, 30 numbers at most, in a single step; false leaves it as it was. The caller holds a lock.
bool attr_write_numbers(int dir, const char *name, std::span<const uint32_t> numbers);

// Reads counters from the files in `directory` named by the words of `names`; one that is missing counts as 0, and
// so does all of a missing directory. False if one is damaged.
bool counters_read(int dir, const char *directory, const char *names, std::span<uint64_t> counters);

// The same for a record of nothing but counters, in the order of `names`. A failure leaves it as it was.
template <typename record_t, size_t size>
bool counters_read_record(int dir, const char *directory, const char (&names)[size], record_t *record) {
    std::array<uint64_t, sizeof(record_t) / sizeof(uint64_t)> counters;
    if (!counters_read(dir, directory, names, counters)) {
        return false;
    }
    *record = std::bit_cast<record_t>(counters);
    return true;
}

// For checks of the names: how many counters they are.
template <size_t size>
consteval size_t counter_names(const char (&names)[size]) {
    return static_cast<size_t>(std::count(names, names + size, ' ')) + 1;
}

#endif

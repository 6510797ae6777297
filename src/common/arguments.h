// Words of the command line that must be within bounds. What reads such a word reports a refusal with the row's
// help text and gives false: the command then returns 1.
#ifndef VXCLI_COMMON_ARGUMENTS_H
#define VXCLI_COMMON_ARGUMENTS_H

#include "common/words.h"

#include <cstdint>
#include <optional>
#include <span>

// Decimal as word_to_decimal reads it, from 0 to `max`.
bool take_number(const char *word, uint32_t max, const char *help, uint32_t *value);

// One of `names`, matched exactly; the value is its place among them.
bool take_name(const char *word, std::span<const char *const> names, const char *help, uint32_t *value);

// The same without a report, and the way back: "unknown" for a value without a name.
std::optional<uint32_t> find_name(std::span<const char *const> names, const char *word);
const char *name_of(std::span<const char *const> names, uint32_t value);

// How the first word of a command tells what the command is about: an LLID, a T-CONT or a port.
struct index_rule_s {
    const char *name; // as printed in front of the index
    bool (*accepts)(const char *word, int32_t *index);
};

bool take_index(const char *word, const index_rule_s &rule, const char *help, int32_t *index);

// Accepts the numbers below what the library counts.
template <int32_t (*count)()>
bool accepts_below(const char *word, int32_t *index) {
    *index = word_to_signed_decimal(word);
    return *index >= 0 && *index < count();
}

// The handler of a command that switches something on (1) or off (0). Further words are ignored, and so is what
// comes of the operation.
template <auto operation>
int32_t config_enable(int32_t, const char *const argv[], const char *help) {
    uint32_t enable = 0;
    if (!take_number(argv[1], 1, help, &enable)) {
        return 1;
    }
    operation(enable != 0);
    return 0;
}

#endif

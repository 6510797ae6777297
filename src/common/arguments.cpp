#include "common/arguments.h"

#include "vxcli.h"

#include <algorithm>
#include <cstring>

bool take_number(const char *word, uint32_t max, const char *help, uint32_t *value) {
    *value = word_to_decimal(word);
    if (*value > max) {
        show_bad_arguments(word, help);
        return false;
    }
    return true;
}

std::optional<uint32_t> find_name(std::span<const char *const> names, const char *word) {
    const auto name = std::ranges::find_if(names, [word](const char *each) { return strcmp(each, word) == 0; });
    return name != names.end() ? std::optional(static_cast<uint32_t>(name - names.begin())) : std::nullopt;
}

const char *name_of(std::span<const char *const> names, uint32_t value) {
    return value < names.size() ? names[value] : "unknown";
}

bool take_name(const char *word, std::span<const char *const> names, const char *help, uint32_t *value) {
    const std::optional<uint32_t> found = find_name(names, word);
    if (!found) {
        show_bad_arguments(word, help);
        return false;
    }
    *value = *found;
    return true;
}

bool take_index(const char *word, const index_rule_s &rule, const char *help, int32_t *index) {
    if (!rule.accepts(word, index)) {
        show_bad_arguments(word, help);
        return false;
    }
    return true;
}

#include "common/words.h"

#include <cstdlib>

std::optional<uint32_t> word_to_u32(const char *word) {
    char *end = nullptr;
    const unsigned long value = strtoul(word, &end, 0);
    if (end == word || *end != '\0') {
        return std::nullopt;
    }
    return static_cast<uint32_t>(value);
}

std::optional<int64_t> word_to_i64(const char *word) {
    char *end = nullptr;
    const long long value = strtoll(word, &end, 0);
    if (end == word || *end != '\0') {
        return std::nullopt;
    }
    return value;
}

uint32_t word_to_decimal(const char *word) {
    return static_cast<uint32_t>(strtol(word, nullptr, 10));
}

int32_t word_to_signed_decimal(const char *word) {
    return static_cast<int32_t>(word_to_decimal(word));
}

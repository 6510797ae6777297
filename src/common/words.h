// Words of the command line as numbers.
#ifndef VXCLI_COMMON_WORDS_H
#define VXCLI_COMMON_WORDS_H

#include <cstdint>
#include <optional>

// The word as a number in the base that it announces itself (0x hexadecimal, leading zero octal, else
// decimal). Nothing for an empty word or one with trailing characters. The unsigned form keeps the low 32
// bits, so that a negative number reads as a large one and fails the caller's range check.
std::optional<uint32_t> word_to_u32(const char *word);
std::optional<int64_t> word_to_i64(const char *word);

// The decimal number that the word begins with, 0 when it begins with none; what follows is ignored. The low 32
// bits count, taken as unsigned for the range checks that are meant so, and as signed for the rest.
uint32_t word_to_decimal(const char *word);
int32_t word_to_signed_decimal(const char *word);

#endif

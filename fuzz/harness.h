// What the fuzzers share: commands of the tool, run as if each were a process of its own, on a board in memory.
#ifndef FUZZ_HARNESS_H
#define FUZZ_HARNESS_H

#include "memory_board.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

// Each fuzzer has one, and one of the two below if its input is text.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size);
extern "C" size_t LLVMFuzzerCustomMutator(uint8_t *data, size_t size, size_t max_size, unsigned seed);

inline std::string_view as_text(const uint8_t *data, size_t size) {
    return {reinterpret_cast<const char *>(data), size};
}

// Runs the tool with a line of words behind its name, and forgets what a process forgets. One blank separates two
// words, so that there are empty ones; the byte 1 stands for a blank in a word. Returns the exit status.
int run_line(std::string_view line);

// Takes off the text what comes before the next `separator`, and the separator.
std::string_view take_part(std::string_view *text, char separator);

// Takes a byte off; 0 if there is none.
uint8_t take_byte(std::string_view *data);

// Ends the process as a crash does, if something that must hold does not.
void must(bool holds, const char *what);

// ---- changing an input part by part ----

void draw_seed(uint32_t seed);
uint32_t draw_below(uint32_t end);

// A command, with words that its help text knows and other likely ones.
std::string draw_line();

// Mostly as the fuzzing engine sees fit; every third time one of the parts between the separators is replaced by
// `fresh()`, taken out or put at another place. Returns the new size.
size_t change_parts(uint8_t *data, size_t size, size_t max_size, unsigned seed, char separator,
                    std::string (*fresh)());

#endif

// A board in memory, and what the tool and the board library see of the world: only this board.
#ifndef FUZZ_MEMORY_BOARD_H
#define FUZZ_MEMORY_BOARD_H

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

// The profile's board, as it is made; the same until another one is asked for. Files that were changed since come
// back, the clock starts anew. Ends the process if there is no such profile.
void board_reset(std::string_view profile);

// Names of all profiles, and of all files of the board as it is made, such as "switch/ports".
const std::vector<std::string> &board_profiles();
const std::vector<std::string> &board_files();

// Writes a file of the board, with the directories that it needs; a directory's place is not taken.
void board_put(std::string_view path, std::string_view contents);

// The contents of a file of the board; empty if there is none.
std::string board_get(std::string_view path);

// The path in the board of what is open under this descriptor; empty if nothing is.
std::string board_path_of(int fd);

// The board's clock. It moves by itself with every look at it, and when somebody sleeps.
extern int64_t board_now_us;

// Whether a file that was to replace another one was left behind.
bool board_has_leftovers();

// What the end of a process does: closes what it left open, and returns how much that was. A second passes until
// the next one.
size_t board_end_process();

#endif

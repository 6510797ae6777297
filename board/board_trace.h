// The trace: what happened to the board, one time-stamped line each, if the board has a file `trace`.
#ifndef BOARD_TRACE_H
#define BOARD_TRACE_H

#include <cstdint>
#include <ctime>
#include <span>

// The unit's time of day.
timespec board_now();

// Appends "<time> <pid> " and the formatted text to the trace. Without a file `trace` nothing happens.
void trace_line(int board, const timespec &when, const char *format, ...) __attribute__((format(printf, 3, 4)));

// Appends the line of a library operation's call.
void trace_call(int board, const char *operation, int32_t result);

// Appends a bus transfer: `text` and then `bytes` in hexadecimal (at most 256).
void trace_transfer(int board, const timespec &when, const char *text, std::span<const uint8_t> bytes);

#endif

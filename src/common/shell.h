// Commands handed to the unit's shell.
#ifndef VXCLI_COMMON_SHELL_H
#define VXCLI_COMMON_SHELL_H

#include <cstddef>
#include <cstdint>

// The longest command line, with its terminating NUL.
inline constexpr size_t SHELL_COMMAND_SIZE = 128;

// Formats a command line and runs it. What this process has printed so far comes out before the command's own
// output. Returns the command's wait status, or -1 when it could not be run; a command line longer than
// SHELL_COMMAND_SIZE is not run at all.
[[gnu::format(printf, 1, 2)]] int32_t shell_run(const char *format, ...);

// Writes `value` and a newline to the file at `path` ("echo 1 > /var/..."), creating it.
void shell_echo_number(int32_t value, const char *path);

// Copies the file `from` to `to`.
void shell_copy(const char *from, const char *to);

#endif

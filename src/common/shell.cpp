#include "common/shell.h"

#include <cstdarg>
#include <cstdio>
#include <cstdlib>

int32_t shell_run(const char *format, ...) {
    char command[SHELL_COMMAND_SIZE];
    va_list args;
    va_start(args, format);
    const int length = vsnprintf(command, sizeof command, format, args);
    va_end(args);
    if (length < 0 || static_cast<size_t>(length) >= sizeof command) {
        return -1;
    }
    fflush(stdout);
    return system(command); // NOLINT(cert-env33-c): the unit's shell is the interface here
}

void shell_echo_number(int32_t value, const char *path) {
    shell_run("echo %d > %s", value, path);
}

void shell_copy(const char *from, const char *to) {
    shell_run("cp %s %s", from, to);
}

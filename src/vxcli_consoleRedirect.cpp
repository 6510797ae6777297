// The console group: what the kernel prints on the console comes to the terminal of this process, and goes back.

#include "vxcli.h"

#include <cstdio>
#include <fcntl.h>
#include <sys/ioctl.h>
#include <unistd.h>

static constexpr char CONSOLE[] = "/dev/console";

// The messages, misspelt as they are, end with a carriage return before the line end: terminals in raw mode need
// it.

static int32_t console_redirect_on(int32_t, const char *const[], const char *) {
    const int result = ioctl(STDOUT_FILENO, TIOCCONS);
    puts(result == 0 ? "console_redirect successfuly \r" : "console_redirect fail \r");
    return result;
}

static int32_t console_redirect_off(int32_t, const char *const[], const char *) {
    const int console = open(CONSOLE, O_WRONLY | O_CLOEXEC); // closed by the end of the process
    if (console < 1) {                                       // 0, too, counts as a failure
        printf("open %s error\n", CONSOLE);
        puts("console_redirect fail \r");
        return -1;
    }
    const int result = ioctl(console, TIOCCONS);
    printf("console_redirect to %s %s \r\n", CONSOLE, result == 0 ? "successfuly" : "fail");
    return result;
}

constinit const vxcli_cmd_t consoleRedirect_cmds[] = {
    {"on", console_redirect_on, 0, "enable console redirect to current telnet"},
    {"off", console_redirect_off, 0, "disable console redirect to current telnet"},
    {nullptr, nullptr, 0, nullptr},
};

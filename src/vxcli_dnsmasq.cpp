// The dnsmasq group: the running server is asked by a queued signal, whose value says what for. It does the work
// and prints the answer itself, so that without a server nothing is to be seen.

#include "vxcli.h"

#include "common/words.h"

#include <csignal>
#include <cstdio>
#include <cstring>

// What the server understands.
enum dnsmasq_request_s {
    DNSMASQ_DUMP = 0,
    DNSMASQ_LOG_ENABLE = 1,
    DNSMASQ_LOG_DISABLE = 2,
    DNSMASQ_FLUSH_IPSET = 3,
    DNSMASQ_RELOAD_IPSET = 4,
    DNSMASQ_DUMP_IPSET = 5
};

// The first process whose line in the list has the server's name in it: 0 without one, -1 without a list.
static int get_dnsmasq_pid() {
    // NOLINTNEXTLINE(cert-env33-c): what `ps` prints differs by unit, and its shell is the interface here
    FILE *list = popen("ps | grep dnsmasq | grep -v grep | grep -v vxcli", "r");
    if (list == nullptr) {
        printf("[%s:%d]popen failed!\n", "get_dnsmasq_pid", 24); // a fixed number: the text is known so
        return -1;
    }
    char line[128] = {};
    const bool found = fgets(line, sizeof line, list) != nullptr;
    pclose(list);
    return found ? word_to_signed_decimal(line) : 0; // lines begin with the process id
}

// 1 is init, which nobody means to signal.
static bool is_server(int pid) {
    return pid >= 2;
}

static void dnsmasq_send(int pid, dnsmasq_request_s request) {
    sigval value = {};
    value.sival_int = request;
    sigqueue(pid, SIGUSR1, value);
}

static int32_t dnsmasq_log(int32_t, const char *const argv[], const char *) {
    const int pid = get_dnsmasq_pid();
    if (!is_server(pid)) {
        return 0; // before the word is looked at
    }
    if (strcmp(argv[1], "enable") == 0) {
        dnsmasq_send(pid, DNSMASQ_LOG_ENABLE);
    } else if (strcmp(argv[1], "disable") == 0) {
        dnsmasq_send(pid, DNSMASQ_LOG_DISABLE);
    } else {
        puts("parameter should be enable/disable");
    }
    return 0;
}

template <dnsmasq_request_s request>
static int32_t dnsmasq_ask(int32_t, const char *const[], const char *) {
    const int pid = get_dnsmasq_pid();
    if (is_server(pid)) {
        dnsmasq_send(pid, request);
    }
    return 0;
}

constinit const vxcli_cmd_t dnsmasq_cmds[] = {
    {"log", dnsmasq_log, 1, "enable/disable dnsmasq log output to console"},
    {"dump", dnsmasq_ask<DNSMASQ_DUMP>, 0, "dump dnsmasq cache info"},
    {"dump_ipset", dnsmasq_ask<DNSMASQ_DUMP_IPSET>, 0, "dump vx ipset list"},
    {"flush_ipset", dnsmasq_ask<DNSMASQ_FLUSH_IPSET>, 0, "flush vx ipset list"},
    {"reload_ipset", dnsmasq_ask<DNSMASQ_RELOAD_IPSET>, 0, "reload vx ipset list"},
    {nullptr, nullptr, 0, nullptr},
};

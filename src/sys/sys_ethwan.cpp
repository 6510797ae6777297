#include "sys/sys_ethwan.h"

#include "common/shell.h"

#include <cstdio>
#include <cstring>

// The interface's name, one word without a line end.
static constexpr char ETHWAN_FILE[] = "/userconfig/config/ethwan";

static void print_ethwan() {
    FILE *file = fopen(ETHWAN_FILE, "r");
    if (file == nullptr) {
        return;
    }
    char word[64] = {}; // a longer name is cut
    if (fscanf(file, "%63s", word) == 1) {
        printf("%s", word); // scripts take the name as it is: no line end
    }
    fclose(file);
}

static void store_ethwan(const char *name) {
    FILE *file = fopen(ETHWAN_FILE, "w");
    if (file == nullptr) {
        printf("Set ethwan failed! can not open file %s\n", ETHWAN_FILE);
        return;
    }
    fputs(name, file);
    fclose(file);
    printf("Set ethwan success!\n");
}

static bool begins_with(const char *word, const char *prefix) {
    return strncmp(word, prefix, strlen(prefix)) == 0;
}

int32_t sys_ethwan(int32_t argc, const char *const argv[], const char *) {
    if (argc == 1) {
        print_ethwan();
    } else if (begins_with(argv[1], "eth") || begins_with(argv[1], "apcli")) {
        store_ethwan(argv[1]);
    } else if (strcmp(argv[1], "null") == 0) {
        shell_run("rm %s", ETHWAN_FILE);
        printf("Clean ethwan success!\n"); // also when there was nothing to clean
    } else {
        printf("The parameter is not right!\neg: eth0 eth1 eth2 eth3 apcli* null(means clean)\n");
    }
    return 0;
}

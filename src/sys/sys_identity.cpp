#include "sys/sys_identity.h"

#include "common/mac_word.h"
#include "libvx.h"
#include "sys/sys_field.h"

#include <algorithm>
#include <cstdio>
#include <cstring>

// Refuses a bad value; that is no failure of the command.
int32_t sys_mac(int32_t argc, const char *const argv[], const char *help) {
    if (argc == 1) {
        return sys_field(argc, argv, help);
    }
    char text[32] = {}; // a longer word is cut before it is judged
    strncpy(text, argv[1], sizeof text - 1);
    if (libvx_is_valid_macAddr(text) == 0) {
        printf("mac is invalid: %s, format is xx:xx:xx:xx:xx:xx\n", text);
        printf("sys mac fail\n");
        return 0;
    }
    sys_report("mac", libvx_sys_setBaseMac(word_to_mac(text).data()));
    return 0;
}

// Warns about a bad value and stores it all the same: factories write unusual serial numbers.
int32_t sys_gponsn(int32_t argc, const char *const argv[], const char *help) {
    if (argc > 1 && libvx_is_valid_gponSN(argv[1]) == 0) {
        printf("WARNING: %s,the SN should be 16 hexadecimal digits or 12 digits with 8 hexadecimal after four "
               "characters or 64 ASCII\n",
               argv[1]);
    }
    return sys_field(argc, argv, help);
}

// Refuses a bad value, and the command fails.
int32_t sys_phyportmap(int32_t argc, const char *const argv[], const char *help) {
    if (argc > 1 && libvx_is_valid_phyPortMap(argv[1]) == 0) {
        printf("Phy Port Map is invalid: %s, format is x,x,x,x\n", argv[1]);
        return -1;
    }
    return sys_field(argc, argv, help);
}

// The empty word is accepted: it clears the language.
static constexpr const char *LANGUAGES[] = {"", "English", "Chinese", "Spain", "Japanese"};

// Refuses a bad value; that is no failure of the command.
int32_t sys_language(int32_t argc, const char *const argv[], const char *help) {
    const auto is_typed = [argv](const char *language) { return strcmp(language, argv[1]) == 0; };
    if (argc > 1 && std::ranges::none_of(LANGUAGES, is_typed)) {
        printf("Language %s is invalid\n", argv[1]);
        printf("sys language fail\n");
        return 0;
    }
    return sys_field(argc, argv, help);
}

#include "port/port_link.h"

#include "libvx.h"
#include "port/port_index.h"

#include <cstdio>

// By the library's values. The zero is "auto" where it is typed and "unknown" where it is shown.
static constexpr const char *SPEEDS[] = {"auto", "10M", "100M", "1000M", "2500M"};
static constexpr const char *DUPLEXES[] = {"auto", "half", "full"};
static constexpr const char *SHOWN_SPEEDS[] = {"unknown", "10M", "100M", "1000M", "2500M"};
static constexpr const char *SHOWN_DUPLEXES[] = {"unknown", "half", "full"};

// What the library's link configuration does with speed and duplex.
enum link_action : uint32_t { LINK_FORCE = 0, LINK_NEGOTIATE = 1, LINK_RESET = 2 };

int32_t port_get_status(int32_t, const char *const argv[], const char *help) {
    int32_t index = 0;
    if (!take_index(argv[1], PORT, help, &index)) {
        return 1;
    }
    uint32_t link = 0;
    uint32_t speed = 0;
    uint32_t duplex = 0;
    if (libvx_switchApi_portGetLinkStatus(static_cast<uint16_t>(index), &link, &speed, &duplex) != 0) {
        printf("fail!\n");
        return 0; // deliberately no failure of the command
    }
    printf("port %d\n", index);
    printf("isUp %d\n", static_cast<int>(link));
    printf("speed %s\n", name_of(SHOWN_SPEEDS, speed));
    printf("duplex %s\n", name_of(SHOWN_DUPLEXES, duplex));
    return 0;
}

int32_t port_config_mode(int32_t argc, const char *const argv[], const char *help) {
    int32_t index = 0;
    if (!take_index(argv[1], PORT, help, &index)) {
        return 1;
    }
    if (argc != 4) {
        printf("arguments num error!\n");
        return 0; // deliberately no failure of the command
    }
    uint32_t speed = 0;
    uint32_t duplex = 0;
    if (!take_name(argv[2], SPEEDS, help, &speed) || !take_name(argv[3], DUPLEXES, help, &duplex)) {
        return 1;
    }
    const bool negotiated = speed == LIBVX_SW_PORT_SPEED_AUTO || duplex == LIBVX_SW_PORT_DUPLEX_AUTO;
    libvx_switchApi_portSetLinkCfg(static_cast<uint16_t>(index), negotiated ? LINK_NEGOTIATE : LINK_FORCE, speed,
                                   duplex);
    return 0;
}

// One word names the port. Without a word, and with too many, it is the 10G port.
int32_t port_config_reset(int32_t argc, const char *const argv[], const char *help) {
    int32_t index = LIBVX_SW_PORT_10G;
    if (argc == 2 && !take_index(argv[1], PORT, help, &index)) {
        return 1;
    }
    libvx_switchApi_portSetLinkCfg(static_cast<uint16_t>(index), LINK_RESET, LIBVX_SW_PORT_SPEED_2500M,
                                   LIBVX_SW_PORT_DUPLEX_FULL);
    return 0;
}

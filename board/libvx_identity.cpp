// System information: the base MAC address, and the forms of identifying texts.

#include "board_call.h"
#include "sysinfo_store.h"

#include <algorithm>
#include <arpa/inet.h>
#include <cstdio>
#include <cstring>

static bool is_digit(char c) {
    return c >= '0' && c <= '9';
}

static bool is_hex(char c) {
    return is_digit(c) || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F');
}

static bool all_hex(const char *text, size_t length) {
    return std::all_of(text, text + length, is_hex);
}

// ---- the forms ----

static constexpr size_t mac_length = 17; // xx:xx:xx:xx:xx:xx

static bool is_mac(const char *text) {
    bool good = strlen(text) == mac_length;
    for (size_t i = 0; good && i < mac_length; i++) {
        good = i % 3 == 2 ? text[i] == ':' : is_hex(text[i]);
    }
    return good;
}

// Texts of 12 and of 16 characters have a form of their own and are valid in no other.
static bool is_gpon_sn(const char *text) {
    const size_t length = strlen(text);
    const bool ascii = std::all_of(text, text + length, [](char c) { return c >= ' ' && c <= '~'; });
    switch (length) {
    case 12:
        return ascii && all_hex(text + 4, 8);
    case 16:
        return all_hex(text, 16);
    default:
        return ascii && length > 0 && length < LIBVX_SYS_SERIAL_SIZE;
    }
}

static bool is_port_map(const char *text) {
    const char *number = text;
    for (int i = 0; i < 4; i++) {
        const size_t digits = strspn(number, "0123456789");
        if (digits == 0 || number[digits] != (i < 3 ? ',' : '\0')) {
            return false;
        }
        number += digits + 1;
    }
    return strlen(text) < LIBVX_SYS_TEXT_SIZE;
}

// An address that a host can have.
static bool is_ipv4(const char *text) {
    uint8_t address[4];
    return inet_pton(AF_INET, text, address) == 1 && address[0] > 0 && address[0] < 224; // 224: multicast
}

// A judgement works without a board as well; a fault of the board overrules it.
static int32_t judge(const char *operation, const char *text, bool (*is_valid)(const char *)) {
    int32_t result = text != nullptr && is_valid(text) ? 1 : 0;
    const board_fd board(board_open());
    if (board.fd >= 0) {
        fault_strikes(board.fd, {.operation = operation}, &result);
        trace_call(board.fd, operation, result);
    }
    return result;
}

int32_t libvx_is_valid_macAddr(const char *text) {
    return judge(__func__, text, is_mac);
}

int32_t libvx_is_valid_gponSN(const char *text) {
    return judge(__func__, text, is_gpon_sn);
}

int32_t libvx_is_valid_phyPortMap(const char *text) {
    return judge(__func__, text, is_port_map);
}

int32_t libvx_is_valid_ipv4Addr(const char *text) {
    return judge(__func__, text, is_ipv4);
}

// ---- the base MAC address ----

static uint8_t hex_value(char c) {
    return static_cast<uint8_t>(is_digit(c) ? c - '0' : (c | 0x20) - 'a' + 10); // 0x20: lower case
}

int32_t libvx_sys_getBaseMac(uint8_t mac[6]) {
    if (mac == nullptr) {
        return LIBVX_RET_INVALID_PARAMETER;
    }
    return board_call(__func__, [mac](int) {
        char text[LIBVX_SYS_SHORT_SIZE];
        const int32_t result = sysinfo_get("MAC", text);
        if (result != LIBVX_RET_OK || !is_mac(text)) {
            return LIBVX_RET_FAIL;
        }
        for (size_t i = 0; i < 6; i++) {
            mac[i] = static_cast<uint8_t>(hex_value(text[3 * i]) << 4 | hex_value(text[3 * i + 1]));
        }
        return LIBVX_RET_OK;
    });
}

int32_t libvx_sys_setBaseMac(const uint8_t mac[6]) {
    if (mac == nullptr) {
        return LIBVX_RET_INVALID_PARAMETER;
    }
    return board_call(__func__, [mac](int) {
        char text[mac_length + 1];
        snprintf(text, sizeof text, "%02X:%02X:%02X:%02X:%02X:%02X", mac[0], mac[1], mac[2], mac[3], mac[4],
                 mac[5]);
        return sysinfo_set("MAC", text);
    });
}

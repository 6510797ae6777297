// LEDs and buttons: BOARD/led holds one directory for each LED, as the unit's /sys/class/leds does.

#include "board_call.h"

#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <span>
#include <sys/stat.h>

static constexpr char led_directory[] = "led";

struct led_row {
    const char *name;
    const char *directory;
};

// In the order of libvx_sys_led_name.
static constexpr led_row leds[] = {
    {"LED_PWR", "pwr_led"},       {"LED_PON", "pon_led"},   {"LED_LOS", "los_led"},   {"LED_LAN", "lan_led"},
    {"LED_WPS", "wps_led"},       {"LED_WLAN", "wlan_led"}, {"LED_FXS1", "fxs1_led"}, {"LED_WAN", "int_led"},
    {"LED_DNLINK", "dnlink_led"}, {"LED_FXS2", "fxs2_led"},
};
static_assert(std::size(leds) == LED_END);

// A LED that the unit lacks has no directory.
static int open_led(int dir, const led_row &led) {
    return openat(dir, led.directory, O_RDONLY | O_DIRECTORY | O_CLOEXEC);
}

static bool set_steady(int led, bool on) {
    return attr_write(led, "trigger", "none") && attr_write(led, "brightness", "%d", on ? 1 : 0);
}

static bool is_file_name(const char *text) {
    const size_t length = text != nullptr ? strlen(text) : 0;
    return length > 0 && length < 32 && strchr(text, '/') == nullptr && text[0] != '.';
}

int32_t libvx_sys_led(int32_t on) {
    return board_call(__func__, [on](int board) {
        const board_fd lock(dir_lock(board, led_directory));
        bool ok = lock.fd >= 0;
        for (const led_row &row : leds) {
            const board_fd led(open_led(lock.fd, row));
            ok = (led.fd < 0 || set_steady(led.fd, on != 0)) && ok;
        }
        return ok ? LIBVX_RET_OK : LIBVX_RET_FILE_WRITE_FAIL;
    });
}

int32_t libvx_sys_setLed(libvx_sys_led_name led, int32_t state, int32_t timer) {
    return board_call(__func__, [=](int board) {
        if (led >= LED_END || state < 0 || state > 2 || timer < 0) {
            return LIBVX_RET_INVALID_PARAMETER;
        }
        const board_fd lock(dir_lock(board, led_directory));
        const board_fd one(open_led(lock.fd, leds[led]));
        if (one.fd < 0) {
            return LIBVX_RET_FAIL;
        }
        const bool ok = attr_write(one.fd, "delay_on", "%d", timer) &&
                        attr_write(one.fd, "delay_off", "%d", timer) && set_steady(one.fd, state != 0) &&
                        (state != 2 || attr_write(one.fd, "trigger", "timer"));
        return ok ? LIBVX_RET_OK : LIBVX_RET_FILE_WRITE_FAIL;
    });
}

int32_t display_dts_led_list_all(void) {
    return board_call(__func__, [](int board) {
        const board_fd dir(openat(board, led_directory, O_RDONLY | O_DIRECTORY | O_CLOEXEC));
        for (const led_row &row : leds) {
            const board_fd led(open_led(dir.fd, row));
            if (led.fd >= 0) {
                printf("%-12s %s\n", row.name, row.directory);
            }
        }
        return dir.fd >= 0 ? LIBVX_RET_OK : LIBVX_RET_FILE_OPEN_FAIL;
    });
}

// What follows from a configuration is not modelled: it is kept, and can be looked at.
int32_t libvx_led_config_set(const char *ledName, const char *config, int32_t value) {
    return board_call(__func__, [=](int board) {
        if (!is_file_name(ledName) || !is_file_name(config)) {
            return LIBVX_RET_INVALID_PARAMETER;
        }
        const board_fd lock(dir_lock(board, "led_config"));
        return lock.fd >= 0 && attr_write(lock.fd, ledName, "%s %d", config, value) ? LIBVX_RET_OK
                                                                                    : LIBVX_RET_FILE_WRITE_FAIL;
    });
}

int32_t libvx_sys_button(int32_t on) {
    return board_call(__func__, [on](int board) {
        return attr_set_number(board, "sys", "button_test", on != 0 ? 1 : 0) ? LIBVX_RET_OK
                                                                             : LIBVX_RET_FILE_WRITE_FAIL;
    });
}

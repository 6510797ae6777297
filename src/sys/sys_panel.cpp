#include "sys/sys_panel.h"

#include "common/words.h"
#include "libvx.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <optional>
#include <span>

struct panel_name_s {
    const char *name; // matched exactly
    int32_t value;
};

static constexpr panel_name_s LED_NAMES[] = {
    {"LED_PWR", LED_PWR}, {"LED_PON", LED_PON},   {"LED_LOS", LED_LOS},       {"LED_LAN", LED_LAN},
    {"LED_WPS", LED_WPS}, {"LED_WLAN", LED_WLAN}, {"LED_FXS1", LED_FXS1},     {"LED_WAN", LED_WAN},
    {"LED_INT", LED_WAN}, {"LED_FXS2", LED_FXS2}, {"LED_DNLINK", LED_DNLINK},
};

static constexpr panel_name_s LED_STATES[] = {{"OFF", 0}, {"ON", 1}, {"BLINK", 2}};

static std::optional<int32_t> find_value(std::span<const panel_name_s> rows, const char *word) {
    const auto row = std::ranges::find_if(rows, [word](const auto &each) { return strcmp(each.name, word) == 0; });
    return row != rows.end() ? std::optional(row->value) : std::nullopt;
}

int32_t sys_led(int32_t, const char *const argv[], const char *) {
    libvx_sys_led(word_to_signed_decimal(argv[1]));
    printf("sys led success\n");
    return 0;
}

int32_t sys_led_event(int32_t argc, const char *const argv[], const char *) {
    if (argc < 4) {
        return -1;
    }
    const std::optional<int32_t> led = find_value(LED_NAMES, argv[1]);
    const std::optional<int32_t> state = find_value(LED_STATES, argv[2]);
    if (!led || !state) {
        return -1;
    }
    libvx_sys_setLed(static_cast<libvx_sys_led_name>(*led), *state, word_to_signed_decimal(argv[3]));
    printf("led event op\n");
    return 0;
}

int32_t sys_led_event_list(int32_t, const char *const[], const char *) {
    display_dts_led_list_all();
    printf("led event list op\n");
    return 0;
}

int32_t sys_button(int32_t, const char *const argv[], const char *) {
    libvx_sys_button(word_to_signed_decimal(argv[1]));
    printf("sys button success\n");
    return 0;
}

// The front panel as the production line tests it: LEDs and buttons.
#ifndef VXCLI_SYS_PANEL_H
#define VXCLI_SYS_PANEL_H

#include <cstdint>

// Command handlers.
int32_t sys_led(int32_t argc, const char *const argv[], const char *help);
int32_t sys_led_event(int32_t argc, const char *const argv[], const char *help);
int32_t sys_led_event_list(int32_t argc, const char *const argv[], const char *help);
int32_t sys_button(int32_t argc, const char *const argv[], const char *help);

#endif

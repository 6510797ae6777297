#include "sys/sys_power.h"

#include "common/shell.h"
#include "common/words.h"
#include "libvx.h"
#include "vxcli.h"

#include <algorithm>
#include <cstddef>
#include <cstdio>
#include <cstring>
#include <iterator>
#include <span>
#include <unistd.h>

// ---- steps: a sequence of them is what the hardware gets, in this order, whatever becomes of each ----

enum class step_kind : uint8_t { run, print_and_run, modify, wait, call };

struct power_step_s {
    step_kind kind;
    uint8_t low_bit = 0; // modify
    uint8_t width = 0;
    uint32_t address = 0;
    uint32_t value = 0;            // modify; wait: seconds
    const char *command = nullptr; // run, print_and_run
    void (*routine)() = nullptr;   // call
};

template <size_t size>
static consteval power_step_s run(const char (&command)[size]) {
    static_assert(size <= SHELL_COMMAND_SIZE);
    return {.kind = step_kind::run, .command = command};
}

// The command line is printed before it is run.
template <size_t size>
static consteval power_step_s print_and_run(const char (&command)[size]) {
    static_assert(size <= SHELL_COMMAND_SIZE);
    return {.kind = step_kind::print_and_run, .command = command};
}

// Puts `value` into the `width` bits of a register from `low_bit` on.
static consteval power_step_s modify(uint32_t address, uint8_t low_bit, uint8_t width, uint32_t value) {
    return {.kind = step_kind::modify, .low_bit = low_bit, .width = width, .address = address, .value = value};
}

static consteval power_step_s wait(uint32_t seconds) {
    return {.kind = step_kind::wait, .value = seconds};
}

static consteval power_step_s call(void (*routine)()) {
    return {.kind = step_kind::call, .routine = routine};
}

static void take_steps(std::span<const power_step_s> steps) {
    for (const power_step_s &step : steps) {
        switch (step.kind) {
        case step_kind::print_and_run:
            printf("\n%s\n", step.command);
            [[fallthrough]];
        case step_kind::run:
            shell_run("%s", step.command);
            break;
        case step_kind::modify:
            vx_mem_modify(step.address, step.low_bit, step.width, step.value);
            break;
        case step_kind::wait:
            sleep(step.value);
            break;
        case step_kind::call:
            step.routine();
            break;
        }
    }
}

// ---- routines of several modes ----

static constexpr power_step_s USB_CLOCK_OPEN[] = {
    run("devmem 0x20100858 32 0x545726"),
    modify(0x20100080, 4, 1, 1),
    modify(0x20100060, 17, 2, 3),
};

static constexpr power_step_s PCIE0_LPI[] = {
    run("devmem 0x22100250 w 0x200000"),
    run("devmem 0x2210025C w 0x200000"),
    modify(0x4000070c, 30, 1, 1),
    wait(1),
};

static constexpr power_step_s PCIE1_LPI[] = {
    run("devmem 0x22300250 w 0x200000"),
    run("devmem 0x2230025C w 0x200000"),
    modify(0x6000070c, 30, 1, 1),
    wait(1),
};

static constexpr power_step_s WIFI_RESET[] = {
    run("devmem 0x2010083c 32 0"),
    modify(0x20100850, 8, 2, 2),
    modify(0x20100850, 12, 2, 2),
    print_and_run("devmem 0x20e00010 32 0x00000000"),
    print_and_run("devmem 0x20e00010 32 0x00100000"),
    print_and_run("devmem 0x20e00010 32 0x00400000"),
    print_and_run("devmem 0x20e00014 32 0x00000000"),
    print_and_run("devmem 0x20e00014 32 0x00100000"),
    print_and_run("devmem 0x20e00014 32 0x00400000"),
};

static void vx5200_low_power_open_usb_clk() {
    take_steps(USB_CLOCK_OPEN);
}

static void vx5200_low_power_pcie0_lpi() {
    take_steps(PCIE0_LPI);
}

static void vx5200_low_power_pcie1_lpi() {
    take_steps(PCIE1_LPI);
}

static void vx5200_low_power_wifi_reset() {
    take_steps(WIFI_RESET);
}

static constexpr power_step_s WIFI_SHUTDOWN[] = {
    print_and_run("vxsUtil -s InternetGatewayDevice.WIFI.Radio.2 Enable boolean 0"),
    wait(6),
    print_and_run("vxsUtil -s InternetGatewayDevice.WIFI.Radio.1 Enable boolean 0"),
    wait(6),
    print_and_run("rmmod mt7916_ap"),
    call(vx5200_low_power_wifi_reset),
};

static void wifi_shutdown() {
    take_steps(WIFI_SHUTDOWN);
}

// ---- the modes ----

static constexpr power_step_s OFF[] = {
    run("cmd lpi 0"),
    run("cmd lpd 0"),
    run("cmd lpu 0"),
    run("cmd gphystb 0"),
    run("cmd prbs serdes_pll_2"),
    run("cmd swfrq 0 3"),
    call(vx5200_low_power_open_usb_clk),
    modify(0x20100080, 8, 4, 15),
    run("devmem 0x20100870 32 0xe000210"),
    run("devmem 0x20100898 32 0x3f70f"),
    run("devmem 0x207ff8 w 0x0"),
    run("devmem 0x207ffc w 0x0"),
};

static constexpr power_step_s P0OFF[] = {
    call(vx5200_low_power_pcie0_lpi),
    modify(0x20100080, 8, 2, 0),
    modify(0x20100898, 0, 2, 0),
};

static constexpr power_step_s P1OFF[] = {
    call(vx5200_low_power_pcie1_lpi),
    modify(0x20100080, 10, 2, 0),
    modify(0x20100898, 2, 2, 0),
};

static constexpr power_step_s XOFF[] = {
    run("devmem 0x22e00000 w 0x0"),
};

static constexpr power_step_s PREPARE[] = {
    call(vx5200_low_power_open_usb_clk), run("devmem 0x207ff8 w 0x995544aa"),
    run("devmem 0x207ffc w 800"), // decimal, and meant so
};

static constexpr power_step_s BOTH_PCIE_OFF[] = {
    call(vx5200_low_power_pcie0_lpi),      call(vx5200_low_power_pcie1_lpi),    modify(0x20100080, 8, 4, 0),
    run("devmem 0x20100870 32 0xa000210"), run("devmem 0x20100898 32 0x3f700"),
};

// Wi-Fi modules are on the PCIe links. Only mode0 looks for them.
static void pcie_off_without_wifi() {
    if (libvx_sys_getWifiNum() == 0) {
        take_steps(BOTH_PCIE_OFF);
    }
}

static constexpr power_step_s MODE0[] = {
    run("cmd swfrq 1 2"),
    run("cmd prbs serdes_pll_1"),
    call(pcie_off_without_wifi),
    run("cmd lpd 1"),
    run("cmd lpu 1"),
    run("cmd lpi 1"),
    run("devmem 0x20100858 32 0x54577e"),
    modify(0x20100080, 4, 1, 0),
    modify(0x20100060, 17, 2, 0),
    run("vxsUtil -s InternetGatewayDevice.WIFI.Radio.1 TransmitPower sint7 20"),
    run("devmem 0x20100020 w 0x80010050"),
};

static constexpr power_step_s MODE1[] = {
    run("cmd sushp 0 f 5 10"),
    run("cmd swfrq 1 1"),
    run("cmd gphystb 1"),
};

static constexpr power_step_s MODE1_LAST[] = {
    run("voip stop"),
    run("devmem 0x20100874 w 0x0"),
    run("devmem 0x20100020 w 0x80010050"),
    run("devmem 0x20100804 w 0x0"),
    run("devmem 0x20100808 w 0x80000000"),
};

// ---- the option words ----

struct power_option_s {
    const char *word; // matched exactly
    std::span<const power_step_s> steps = {};
    void (*take_next)(const char *word) = nullptr; // what takes the option's own word, if it has one
};

// Suspends the PHYs of all LAN ports but one, numbered from 1.
static void keep_one_lan(const char *word) {
    const uint32_t lan = word_to_decimal(word);
    if (lan < 1 || lan > 4) {
        return;
    }
    const auto phy = static_cast<uint32_t>(libvx_switchApi_ethPortNum2PhyPortNum(static_cast<int32_t>(lan) - 1));
    shell_run("cmd sushp 1 %d 5 10", static_cast<int32_t>(~(1U << phy % 32) & 15U));
}

static constexpr power_step_s MODE0_WL6[] = {
    call(wifi_shutdown),
};

// Only here the Wi-Fi LED is lit afterwards.
static constexpr power_step_s MODE1_WL6[] = {
    call(wifi_shutdown),
    run("echo 1 >/sys/class/leds/wlan_led/brightness"),
};

static void leds_off() {
    libvx_led_config_set("LED_OFF", "LedOff", 1);
}

static constexpr power_step_s MODE1_SER[] = {
    run("cmd prbs serdes_poweroff"),
    call(leds_off),
    wait(1),
    run("echo none >/sys/class/leds/pon_led/trigger"),
    run("echo 1 >/sys/class/leds/pon_led/brightness"),
    run("echo none >/sys/class/leds/los_led/trigger"),
    run("echo 0 >/sys/class/leds/los_led/brightness"),
    run("echo 1 >/sys/class/leds/int_led/brightness"),
};

static constexpr power_option_s MODE0_OPTIONS[] = {
    {.word = "wl6", .steps = MODE0_WL6},
    {.word = "lan", .take_next = keep_one_lan},
};

static constexpr power_option_s MODE1_OPTIONS[] = {
    {.word = "wl6", .steps = MODE1_WL6},
    {.word = "ser", .steps = MODE1_SER},
};

// Takes the options in the order of the words. Words that the mode does not know are passed over.
static void take_options(std::span<const power_option_s> options, std::span<const char *const> words) {
    for (size_t i = 0; i < words.size(); i++) {
        const auto option = std::ranges::find_if(
            options, [word = words[i]](const auto &each) { return strcmp(each.word, word) == 0; });
        if (option == options.end()) {
            continue;
        }
        take_steps(option->steps);
        if (option->take_next != nullptr && i + 1 < words.size()) {
            option->take_next(words[++i]);
        }
    }
}

// ---- the command ----

struct power_mode_s {
    const char *name; // matched exactly
    std::span<const power_step_s> steps;
    std::span<const power_option_s> options = {}; // taken after the steps
    std::span<const power_step_s> last = {};
};

static constexpr power_mode_s MODES[] = {
    {.name = "off", .steps = OFF},
    {.name = "p0off", .steps = P0OFF},
    {.name = "p1off", .steps = P1OFF},
    {.name = "xoff", .steps = XOFF},
    {.name = "prepare", .steps = PREPARE},
    {.name = "mode0", .steps = MODE0, .options = MODE0_OPTIONS},
    {.name = "mode1", .steps = MODE1, .options = MODE1_OPTIONS, .last = MODE1_LAST},
};

int32_t sys_power_save(int32_t argc, const char *const argv[], const char *help) {
    if (argc <= 1) {
        printf("arguments num [%d]error\n", argc);
        return -1;
    }
    const auto *mode =
        std::ranges::find_if(MODES, [argv](const auto &each) { return strcmp(each.name, argv[1]) == 0; });
    if (mode == std::end(MODES)) {
        show_bad_arguments(argv[1], help);
        return 0; // reported, and yet no failure
    }
    take_steps(mode->steps);
    take_options(mode->options, {argv + 2, static_cast<size_t>(argc) - 2});
    take_steps(mode->last);
    return 0;
}

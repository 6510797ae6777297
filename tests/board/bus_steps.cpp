// Drives the device library by hand: each word of the command line is a step, all in one process.
//
//   r:DEV:REG:LEN    prints the registers in hexadecimal, or "fail RESULT"
//   w:DEV:REG:HEX    prints "ok" or "fail RESULT"
//   b:BUS            the bus of the transfers that follow (1)
//   calget:PARTITION:OFFSET:SIZE:PATH  calsave:...
//                    copies a range of flash, prints "ok" or "fail RESULT"
//   wait:US  get  save  diag  log  level
//
// Numbers are hexadecimal but for the wait.

#include "libvx.h"

#include <array>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string_view>
#include <unistd.h>

static uint32_t bus = 1;

static void report(int32_t result) {
    if (result == 0) {
        printf("ok\n");
    } else {
        printf("fail %d\n", result);
    }
}

static uint32_t hex_number(const char *text) {
    return static_cast<uint32_t>(strtoul(text, nullptr, 16));
}

static void read_step(uint32_t device, uint32_t reg, uint32_t length) {
    uint8_t data[256];
    const int32_t result = libvx_ponApi_i2cRead(bus, device, reg, data, length);
    if (result != 0) {
        report(result);
        return;
    }
    for (uint32_t i = 0; i < length; i++) {
        printf("%02x", data[i]);
    }
    printf("\n");
}

static void write_step(uint32_t device, uint32_t reg, const char *hex) {
    uint8_t data[256];
    uint32_t length = 0;
    for (; hex[0] != '\0' && hex[1] != '\0' && length < sizeof data; hex += 2) {
        const char digits[] = {hex[0], hex[1], '\0'};
        data[length++] = static_cast<uint8_t>(hex_number(digits));
    }
    report(libvx_ponApi_i2cWrite(bus, device, reg, data, length));
}

static void diag_step() {
    libvx_pon_ctcOptDiag_t diag = {};
    const int32_t result = libvx_ponApi_eponGetOptDiag(&diag);
    if (result != 0) {
        report(result);
        return;
    }
    printf("%d %u %u %u %u\n", diag.temp, diag.vcc, diag.txBias, diag.txPwr, diag.rxPwr);
}

// The words of a step, between colons; "" for those that are missing.
using step_words = std::array<const char *, 5>;

static step_words split(char *step) {
    step_words words = {"", "", "", "", ""};
    for (const char *&word : words) {
        word = strsep(&step, ":");
        if (step == nullptr) {
            break;
        }
    }
    return words;
}

static void run_step(const step_words &words) {
    const std::string_view kind = words[0];
    if (kind == "r") {
        read_step(hex_number(words[1]), hex_number(words[2]), hex_number(words[3]));
    } else if (kind == "w") {
        write_step(hex_number(words[1]), hex_number(words[2]), words[3]);
    } else if (kind == "b") {
        bus = hex_number(words[1]);
    } else if (kind == "calget") {
        report(libvx_sys_get_wlan_caldata(words[1], hex_number(words[2]), hex_number(words[3]), words[4]));
    } else if (kind == "calsave") {
        report(libvx_sys_save_wlan_caldata(words[1], hex_number(words[2]), hex_number(words[3]), words[4]));
    } else if (kind == "wait") {
        usleep(static_cast<useconds_t>(strtoul(words[1], nullptr, 10)));
    } else if (kind == "get") {
        report(libvx_sys_getBob());
    } else if (kind == "save") {
        report(libvx_sys_saveBob());
    } else if (kind == "diag") {
        diag_step();
    } else if (kind == "log") {
        libvx_setDebugLevel(1);
        libvx_logPrint("libvx Error", "src/x.cpp", "step", 7, "level %d", libvx_DbgLevel);
    }
}

int main(int argc, char *argv[]) {
    for (int i = 1; i < argc; i++) {
        run_step(split(argv[i]));
    }
    return 0;
}

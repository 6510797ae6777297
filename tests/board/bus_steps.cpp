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

#include <cstdio>
#include <cstdlib>
#include <cstring>
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

static void log_step() {
    libvx_setDebugLevel(1);
    libvx_logPrint("libvx Error", "src/x.cpp", "step", 7, "level %d", libvx_DbgLevel);
}

static void transfer_step(char *step) {
    char *rest = nullptr;
    const char *kind = strtok_r(step, ":", &rest);
    const char *device = strtok_r(nullptr, ":", &rest);
    const char *reg = strtok_r(nullptr, ":", &rest);
    if (device == nullptr || reg == nullptr) {
        printf("what is %s?\n", kind);
    } else if (*kind == 'r') {
        read_step(hex_number(device), hex_number(reg), hex_number(rest));
    } else {
        write_step(hex_number(device), hex_number(reg), rest);
    }
}

static void caldata_step(char *step) {
    char *rest = nullptr;
    const bool get = strcmp(strtok_r(step, ":", &rest), "calget") == 0;
    const char *partition = strtok_r(nullptr, ":", &rest);
    const char *offset = strtok_r(nullptr, ":", &rest);
    const char *size = strtok_r(nullptr, ":", &rest);
    if (size == nullptr) {
        printf("what is %s?\n", step);
        return;
    }
    const auto operation = get ? libvx_sys_get_wlan_caldata : libvx_sys_save_wlan_caldata;
    report(operation(partition, hex_number(offset), hex_number(size), rest));
}

int main(int argc, char *argv[]) {
    for (int i = 1; i < argc; i++) {
        char *step = argv[i];
        if (strncmp(step, "wait:", 5) == 0) {
            usleep(static_cast<useconds_t>(strtoul(step + 5, nullptr, 10)));
        } else if (strncmp(step, "b:", 2) == 0) {
            bus = hex_number(step + 2);
        } else if (strncmp(step, "cal", 3) == 0) {
            caldata_step(step);
        } else if (strcmp(step, "get") == 0) {
            report(libvx_sys_getBob());
        } else if (strcmp(step, "save") == 0) {
            report(libvx_sys_saveBob());
        } else if (strcmp(step, "diag") == 0) {
            diag_step();
        } else if (strcmp(step, "log") == 0) {
            log_step();
        } else {
            transfer_step(step);
        }
    }
    return 0;
}

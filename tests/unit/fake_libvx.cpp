#include "fake_libvx.h"

#include "libvx.h"

#include <cstdio>
#include <unistd.h>

std::vector<std::string> fake_log;
int fake_failing_write;

// These come before the library's and libc's own.

int32_t libvx_ponApi_i2cWrite(uint32_t, uint32_t devaddr, uint32_t regaddr, const uint8_t *, uint32_t len) {
    char text[32];
    snprintf(text, sizeof text, "w %x %02x %u", devaddr, regaddr, len);
    fake_log.emplace_back(text);
    return fake_failing_write != 0 && --fake_failing_write == 0 ? 5 : 0;
}

extern "C" int usleep(useconds_t microseconds) {
    fake_log.push_back("wait " + std::to_string(microseconds));
    return 0;
}

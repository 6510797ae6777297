#include "bob/bob_bus.h"

#include "bob/bob_chip.h"
#include "bob/bob_image.h"
#include "bob/bob_status.h"
#include "common/words.h"
#include "libvx.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <unistd.h>

static constexpr uint32_t PIECE_WAIT_US = 5000;

int32_t bob_read_byte(uint32_t device, uint32_t reg, uint8_t *value) {
    return libvx_ponApi_i2cRead(BOB_BUS, device, reg, value, 1);
}

int32_t bob_write_byte(uint32_t device, uint32_t reg, uint8_t value) {
    return libvx_ponApi_i2cWrite(BOB_BUS, device, reg, &value, 1);
}

int32_t bob_select_table(uint8_t table) {
    return bob_write_byte(BOB_A2, BOB_TABLE_SELECT, table);
}

int32_t bob_switch_table(uint8_t table) {
    const int32_t result = bob_select_table(table);
    if (result != 0) {
        printf("i2c switch tab %d fail.\n", int{table});
    }
    return result;
}

// ---- paged writes ----

// Pieces that end at page boundaries. Each is followed by a wait, but for a last one that ends inside a page.
static int32_t write_pages(uint32_t bus, uint32_t device, uint32_t reg, std::span<const uint8_t> data,
                           uint32_t page, uint32_t wait_us) {
    const uint32_t head = page - reg % page;
    if (reg % page != 0 && head >= data.size()) {
        return libvx_ponApi_i2cWrite(bus, device, reg, data.data(), static_cast<uint32_t>(data.size()));
    }
    size_t length = reg % page != 0 ? head : page;
    while (data.size() >= length) {
        const int32_t result = libvx_ponApi_i2cWrite(bus, device, reg, data.data(), static_cast<uint32_t>(length));
        if (result != 0) {
            return result;
        }
        if (wait_us != 0) {
            usleep(wait_us);
        }
        reg += static_cast<uint32_t>(length);
        data = data.subspan(length);
        length = page;
    }
    if (data.empty()) {
        return 0;
    }
    return libvx_ponApi_i2cWrite(bus, device, reg, data.data(), static_cast<uint32_t>(data.size()));
}

int32_t bob_ux33xx_i2cWrite(uint32_t bus_num, uint32_t devaddr, uint32_t regaddr, const uint8_t *data,
                            uint32_t len) {
    return write_pages(bus_num, devaddr, regaddr, {data, len}, 16, PIECE_WAIT_US);
}

int32_t bob_gn_i2cWrite(uint32_t bus_num, uint32_t devaddr, uint32_t regaddr, const uint8_t *data, uint32_t len) {
    if (devaddr != BOB_A0) {
        return write_pages(bus_num, devaddr, regaddr, {data, len}, 8, 0);
    }
    if (get_bob_e2prom_status() == 0) {
        return write_a0_to_file(static_cast<int32_t>(regaddr), data, static_cast<int32_t>(len));
    }
    for (uint32_t i = 0; i < len; i++) {
        const int32_t result = libvx_ponApi_i2cWrite(bus_num, devaddr, regaddr + i, &data[i], 1);
        if (result != 0) {
            return result;
        }
        usleep(PIECE_WAIT_US);
    }
    return 0;
}

// ---- runs as the commands ask for them ----

int32_t bob_read_run(bool shadowed, uint32_t bus, uint32_t device, uint32_t reg, std::span<uint8_t> values) {
    if (shadowed) {
        return read_a0_from_file(static_cast<int32_t>(reg), values.data(), static_cast<int32_t>(values.size()));
    }
    return libvx_ponApi_i2cRead(bus, device, reg, values.data(), static_cast<uint32_t>(values.size()));
}

int32_t bob_write_run(int32_t chip_type, uint32_t bus, uint32_t device, uint32_t reg,
                      std::span<const uint8_t> values) {
    const uint32_t length = static_cast<uint32_t>(values.size());
    switch (bob_chip(chip_type).paging) {
    case bob_paging::ux:
        return bob_ux33xx_i2cWrite(bus, device, reg, values.data(), length);
    case bob_paging::gn:
        return bob_gn_i2cWrite(bus, device, reg, values.data(), length);
    case bob_paging::whole:
    case bob_paging::none:
        break;
    }
    return libvx_ponApi_i2cWrite(bus, device, reg, values.data(), length);
}

std::optional<uint8_t> bob_data_word(const char *word) {
    const std::optional<int64_t> number = word_to_i64(word);
    if (!number || *number > 255 || *number == -1) {
        return std::nullopt;
    }
    return static_cast<uint8_t>(*number);
}

// ---- the A0 shadow file ----

using a0_page = std::array<uint8_t, BOB_REGISTERS>;

bool bob_is_shadowed(int32_t chip_type, uint32_t devaddr) {
    return devaddr == BOB_A0 && bob_chip(chip_type).paging == bob_paging::gn && get_bob_e2prom_status() == 0;
}

// Reads the whole page and checks that [start, start + len) lies in it. False after a message.
static bool load_a0(FILE *file, a0_page &page, int32_t start, int32_t len) {
    const size_t count = fread(page.data(), 1, page.size(), file);
    if (count != page.size()) {
        printf("read_a0_from_file [%s] failed! need read size [%d], get count [%d] \n", BOB_A0_FILE,
               static_cast<int>(page.size()), static_cast<int>(count));
        return false;
    }
    if (start < 0 || len < 0 || int64_t{start} + len > int64_t{BOB_REGISTERS}) {
        printf("buff overflow!\n");
        return false;
    }
    return true;
}

int32_t read_a0_from_file(int32_t start, uint8_t *pData, int32_t len) {
    FILE *file = fopen(BOB_A0_FILE, "r+");
    if (file == nullptr) {
        printf("bob:open file: %s fail!\n", BOB_A0_FILE);
        return -1;
    }
    a0_page page;
    const bool loaded = load_a0(file, page, start, len);
    fclose(file);
    if (!loaded) {
        return -1;
    }
    std::copy_n(page.begin() + start, len, pData);
    return 0;
}

int32_t write_a0_to_file(int32_t start, const uint8_t *pData, int32_t len) {
    FILE *file = fopen(BOB_A0_FILE, "r+");
    if (file == nullptr) {
        file = fopen(BOB_A0_FILE, "wb+");
        if (file == nullptr) {
            printf("bob:open file: %s fail!\n", BOB_A0_FILE);
            return -1;
        }
        fwrite(pData, 1, static_cast<size_t>(std::max(len, 0)), file);
        fclose(file);
        return 0;
    }
    // A short file is reported in the reading function's name: the text is shared.
    a0_page page;
    if (!load_a0(file, page, start, len)) {
        fclose(file);
        return -1;
    }
    std::copy_n(pData, len, page.begin() + start);
    rewind(file);
    fwrite(page.data(), 1, page.size(), file);
    fclose(file);
    return 0;
}

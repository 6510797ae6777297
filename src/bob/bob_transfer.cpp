#include "bob/bob_transfer.h"

#include "bob/bob_bus.h"
#include "bob/bob_chip.h"
#include "libvx.h"

#include <algorithm>
#include <cstdio>
#include <unistd.h>

static constexpr uint32_t UX_PAGE = 16;
static constexpr uint32_t UX_WAIT_US = 10000;
static constexpr uint32_t GN_PAGE = 8;

static void wait_us(uint32_t microseconds) {
    if (microseconds != 0) {
        usleep(microseconds);
    }
}

static uint32_t table_base(uint8_t table) {
    return table != 0 ? BOB_A2_UPPER : 0;
}

static int32_t write_registers(uint32_t device, uint32_t reg, std::span<const uint8_t> data) {
    return libvx_ponApi_i2cWrite(BOB_BUS, device, reg, data.data(), static_cast<uint32_t>(data.size()));
}

// Whole pages, each followed by the wait, then what remains without one. Unlike the register commands' paged
// write, a failed piece does not keep the rest from being written.
static int32_t write_chunks(uint32_t device, uint32_t reg, std::span<const uint8_t> data, uint32_t page,
                            uint32_t chunk_wait_us) {
    int32_t result = 0;
    for (; data.size() >= page; data = data.subspan(page), reg += page) {
        result |= write_registers(device, reg, data.first(page));
        wait_us(chunk_wait_us);
    }
    if (!data.empty()) {
        result |= write_registers(device, reg, data);
    }
    return result;
}

// ---- A0 ----

int32_t write_to_ux_a0(int32_t chip_type) {
    const bob_chip_s &chip = bob_chip(chip_type);
    if (chip.image == nullptr) {
        return 0;
    }
    const std::span<const uint8_t> a0 = bob_record(*chip.image).subspan(chip.image->a0, 128);
    switch (chip.paging) {
    case bob_paging::whole:
        return write_registers(BOB_A0, 0, a0);
    case bob_paging::ux:
        return write_chunks(BOB_A0, 0, a0, UX_PAGE, UX_WAIT_US);
    case bob_paging::gn:
    case bob_paging::none:
        break;
    }
    return 0;
}

int32_t read_from_ux_a0(int32_t chip_type) {
    uint8_t page[BOB_REGISTERS];
    const int32_t result = libvx_ponApi_i2cRead(BOB_BUS, BOB_A0, 0, page, sizeof page);
    if (result != 0) {
        printf("read_from_ux_a0 fail.\n");
        return result;
    }
    const bob_chip_s &chip = bob_chip(chip_type);
    if (chip.paging == bob_paging::whole || chip.paging == bob_paging::ux) {
        std::ranges::copy(page, bob_record(*chip.image).begin() + chip.image->a0);
    }
    return 0;
}

// ---- one table ----

static int32_t __ux_write_lut(uint8_t table, std::span<const uint8_t> source, int32_t chip_type) {
    const int32_t selected = bob_switch_table(table);
    if (selected != 0) {
        return selected;
    }
    const uint32_t base = table_base(table);
    switch (bob_chip(chip_type).paging) {
    case bob_paging::whole:
        return write_registers(BOB_A2, base, source);
    case bob_paging::ux:
        wait_us(UX_WAIT_US);
        return write_chunks(BOB_A2, base, source, UX_PAGE, UX_WAIT_US);
    case bob_paging::gn:
        return write_chunks(BOB_A2, base, source, GN_PAGE, 0);
    case bob_paging::none:
        break;
    }
    return 0;
}

// Table 3 of the UX3320 in one transfer.
static int32_t __ux_write_lut3(std::span<const uint8_t> source) {
    const int32_t selected = bob_switch_table(3);
    return selected != 0 ? selected : write_registers(BOB_A2, BOB_A2_UPPER, source);
}

// Table 0x81 of the GN28L97 family: registers 0x88 and 0x8A come after everything else, on purpose.
static int32_t __gn28l97_write_lut81(std::span<const uint8_t> source) {
    struct piece_s {
        uint8_t reg;
        uint8_t length;
    };
    static constexpr piece_s HEAD[] = {{0x80, 8}, {0x89, 1}, {0x8B, 5}};
    static constexpr piece_s TAIL[] = {{0x88, 1}, {0x8A, 1}};

    const int32_t selected = bob_switch_table(0x81);
    if (selected != 0) {
        return selected;
    }
    int32_t result = 0;
    for (const piece_s piece : HEAD) {
        result |= write_registers(BOB_A2, piece.reg, source.subspan(piece.reg - BOB_A2_UPPER, piece.length));
    }
    result |= write_chunks(BOB_A2, 0x90, source.subspan(0x10), GN_PAGE, 0);
    for (const piece_s piece : TAIL) {
        result |= write_registers(BOB_A2, piece.reg, source.subspan(piece.reg - BOB_A2_UPPER, piece.length));
    }
    return result;
}

static int32_t __ux_read_lut(uint8_t table, std::span<uint8_t> destination) {
    const int32_t selected = bob_switch_table(table);
    if (selected != 0) {
        return selected;
    }
    uint8_t buffer[BOB_A2_UPPER];
    const int32_t result =
        libvx_ponApi_i2cRead(BOB_BUS, BOB_A2, table_base(table), buffer, static_cast<uint32_t>(destination.size()));
    if (result != 0) {
        printf("__ux_read_lut %d fail.\n", int{table});
        return result;
    }
    std::copy_n(buffer, destination.size(), destination.begin());
    return 0;
}

// Table 3 of the UX3320 and UX3320S, read whole; the record keeps as much of it as it has room for.
static int32_t __ux_read_lut3(std::span<uint8_t> destination) {
    const int32_t selected = bob_switch_table(3);
    if (selected != 0) {
        return selected;
    }
    uint8_t buffer[128];
    const int32_t result = libvx_ponApi_i2cRead(BOB_BUS, BOB_A2, BOB_A2_UPPER, buffer, sizeof buffer);
    if (result != 0) {
        printf("__ux_read_lut3 fail.\n");
        return result;
    }
    std::copy_n(buffer, destination.size(), destination.begin());
    return 0;
}

// ---- A2 ----

static int32_t write_row(const bob_write_row_s &row, std::span<const uint8_t> record, int32_t chip_type) {
    const std::span<const uint8_t> source = record.subspan(row.offset, row.length);
    switch (row.routine) {
    case bob_write_routine::lut:
        return __ux_write_lut(row.table, source, chip_type);
    case bob_write_routine::lut3:
        return __ux_write_lut3(source);
    case bob_write_routine::lut81:
        return __gn28l97_write_lut81(source);
    }
    return 0;
}

static int32_t pulse_tx(const bob_write_plan_s &plan, uint8_t control) {
    static constexpr uint32_t CONTROL = 0x6E;
    static constexpr uint8_t TX_BIT = 0x40;
    wait_us(plan.before_pulse_us);
    int32_t result = bob_write_byte(BOB_A2, CONTROL, static_cast<uint8_t>(control | TX_BIT));
    wait_us(plan.in_pulse_us);
    result |= bob_write_byte(BOB_A2, CONTROL, static_cast<uint8_t>(control & ~TX_BIT));
    wait_us(plan.after_pulse_us);
    return result;
}

static int32_t pulse_lut2_ae() {
    static constexpr uint32_t CONTROL = 0xAE;
    usleep(10000);
    int32_t result = bob_select_table(2);
    uint8_t value = 0;
    if (result == 0) {
        result = bob_read_byte(BOB_A2, CONTROL, &value);
    }
    if (result != 0) {
        return result; // no table or no value to write back
    }
    result |= bob_write_byte(BOB_A2, CONTROL, value & 0xFE);
    usleep(10000);
    return result | bob_write_byte(BOB_A2, CONTROL, value);
}

static int32_t write_ending(const bob_write_plan_s &plan, uint8_t control) {
    switch (plan.ending) {
    case bob_write_ending::tx_pulse:
        return pulse_tx(plan, control);
    case bob_write_ending::select_table0:
        return bob_select_table(0);
    case bob_write_ending::lut2_ae_pulse:
        return pulse_lut2_ae();
    case bob_write_ending::none:
        break;
    }
    return 0;
}

int32_t write_to_ux_a2(int32_t chip_type) {
    const bob_chip_s &chip = bob_chip(chip_type);
    if (chip.write_plan == nullptr) {
        return 0;
    }
    const bob_write_plan_s &plan = *chip.write_plan;
    const std::span<uint8_t> record = bob_record(*chip.image);
    const uint8_t held = record[plan.held_offset];
    if (plan.held_reg != 0) {
        record[plan.held_offset] = held & 0xFE;
    }
    int32_t result = 0;
    for (const bob_write_row_s &row : plan.rows) {
        wait_us(plan.before_table_us);
        result |= write_row(row, record, chip_type);
        wait_us(plan.after_table_us);
    }
    result |= write_ending(plan, record[chip.image->a2_low + size_t{0x6E}]);
    if (plan.held_reg != 0) {
        record[plan.held_offset] = held;
        result |= bob_write_byte(BOB_A2, plan.held_reg, held);
    }
    return result;
}

int32_t read_from_ux_a2(int32_t chip_type) {
    const bob_chip_s &chip = bob_chip(chip_type);
    if (chip.image == nullptr) {
        return 0;
    }
    const std::span<uint8_t> record = bob_record(*chip.image);
    int32_t result = 0;
    for (const bob_read_row_s &row : chip.image->read_order) {
        const std::span<uint8_t> destination = record.subspan(row.offset, row.keep);
        result |= row.fetch == row.keep ? __ux_read_lut(row.table, destination) : __ux_read_lut3(destination);
    }
    const bob_transient_reg_s &transient = chip.image->transient;
    if (transient.table != 0) {
        record[transient.offset] = 0;
    }
    return result;
}

#include "bob/bob_checksum.h"

#include "bob/bob_chip.h"
#include "bob/bob_image.h"

#include <cstdio>

// Indexes of a table's registers, both ends included.
struct sum_range_s {
    uint8_t first;
    uint8_t last;
};

uint8_t bob_sum(std::span<const uint8_t> bytes) {
    uint8_t sum = 0;
    for (const uint8_t byte : bytes) {
        sum = static_cast<uint8_t>(sum + byte);
    }
    return sum;
}

template <size_t Size>
static uint8_t sum_ranges(const uint8_t (&reg)[Size], std::span<const sum_range_s> ranges) {
    uint8_t sum = 0;
    for (const sum_range_s range : ranges) {
        const auto part = std::span(reg).subspan(range.first, range.last - range.first + size_t{1});
        sum = static_cast<uint8_t>(sum + bob_sum(part));
    }
    return sum;
}

static int32_t check_sum(const char *name, uint8_t computed, uint8_t stored) {
    if (computed == stored) {
        return 0;
    }
    printf("checksum %s is not correct, should be [0x%x]; %s=[0x%x]\n", name, unsigned{computed}, name,
           unsigned{stored});
    return -1;
}

// Like check_sum, but a marker's value is printed in upper case.
static int32_t check_marker(const char *name, uint8_t marker, uint8_t stored) {
    if (marker == stored) {
        return 0;
    }
    printf("checksum %s is not correct, should be [0x%X]; %s=[0x%x]\n", name, unsigned{marker}, name,
           unsigned{stored});
    return -1;
}

// The three checks that all records share.
static int32_t check_pages(std::span<const uint8_t, 256> a0, std::span<const uint8_t, 128> a2_low) {
    if (check_sum("A0.3Fh", bob_sum(a0.first<0x3F>()), a0[0x3F]) != 0 ||
        check_sum("A0.5Fh", bob_sum(a0.subspan<0x40, 31>()), a0[0x5F]) != 0 ||
        check_sum("A2.5Fh", bob_sum(a2_low.first<0x5F>()), a2_low[0x5F]) != 0) {
        return -1;
    }
    return 0;
}

// UX3320 and UX3320S: they differ in the registers of table 3 that are summed.
template <typename Record>
static int32_t check_ux_record(Record &record, std::span<const sum_range_s> lut3_ranges) {
    if (check_pages(record.a0, record.a2_low) != 0) {
        return -1;
    }
    record.st_lut3.chksum = sum_ranges(record.st_lut3.reg, lut3_ranges);
    record.st_bias.chksum = bob_sum(record.st_bias.reg);
    record.st_mod.chksum = bob_sum(record.st_mod.reg);
    record.st_apd.chksum = bob_sum(record.st_apd.reg);
    const uint8_t total = static_cast<uint8_t>(record.st_mod.chksum + record.st_apd.chksum + record.st_lut3.chksum +
                                               record.st_bias.chksum);
    if (check_marker("LUT3.80h", 0xAA, record.st_lut3.reg[0]) != 0 ||
        check_marker("LUT3.DCh", 0x55, record.st_lut3.reg[0x5C]) != 0 ||
        check_sum("LUT3.DBh", total, record.st_lut3.reg[0x5B]) != 0) {
        return -1;
    }
    return 0;
}

int32_t check_ux_data() {
    static constexpr sum_range_s LUT3[] = {{0x02, 0x52}};
    return check_ux_record(g_st_ux_data, LUT3);
}

int32_t check_ux3320s_data() {
    // Register 0xA1 is left out on purpose, as 0x80 is.
    static constexpr sum_range_s LUT3[] = {{0x01, 0x20}, {0x22, 0x52}};
    return check_ux_record(g_st_ux3320s_data, LUT3);
}

int32_t check_ux336x_data(int32_t chip_type) {
    // Register 0xB7 and the checksum register 0xE6 of table 0x80 are left out on purpose, and only 105 of the
    // 107 registers of tables 0x81 to 0x83 are summed: the images in the field are made so.
    static constexpr sum_range_s DS[] = {{0x01, 0x36}, {0x38, 0x65}};
    static constexpr sum_range_s CURVE[] = {{0x00, 0x68}};
    static constexpr sum_range_s APC[] = {{0x00, 0x53}, {0x56, 0x5D}, {0x63, 0x66}};
    static constexpr sum_range_s APC_UX3365[] = {{0x00, 0x53}, {0x56, 0x5D}, {0x63, 0x66}, {0x6B, 0x6E}};
    static constexpr sum_range_s LOS[] = {{0x00, 0x14}, {0x20, 0x2A}, {0x30, 0x37}, {0x40, 0x54}};
    static constexpr sum_range_s EMP_AMP[] = {{0x00, 0x29}};

    bob_data_ux336x_s &data = g_st_ux336x_data;
    if (check_pages(data.a0, data.a2_low) != 0) {
        return -1;
    }
    data.st_ds.chksum = sum_ranges(data.st_ds.reg, DS);
    data.st_bias.chksum = sum_ranges(data.st_bias.reg, CURVE);
    data.st_mod.chksum = sum_ranges(data.st_mod.reg, CURVE);
    data.st_apd.chksum = sum_ranges(data.st_apd.reg, CURVE);
    const bool is_ux3365 = chip_type == BOB_UX3365;
    data.st_apc.chksum = is_ux3365 ? sum_ranges(data.st_apc.reg, APC_UX3365) : sum_ranges(data.st_apc.reg, APC);
    data.st_los.chksum = sum_ranges(data.st_los.reg, LOS);
    data.st_emp_amp.chksum = sum_ranges(data.st_emp_amp.reg, EMP_AMP);
    const uint8_t total =
        static_cast<uint8_t>(data.st_emp_amp.chksum + data.st_apd.chksum + data.st_los.chksum +
                             data.st_bias.chksum + data.st_mod.chksum + data.st_ds.chksum + data.st_apc.chksum);
    if (check_marker("T80.80h", 0xAA, data.st_ds.reg[0]) != 0 ||
        check_sum("T80.E6h", total, data.st_ds.reg[0x66]) != 0) {
        return -1;
    }
    return 0;
}

int32_t check_gn25l95_data() {
    return check_pages(g_st_gn_data.a0, g_st_gn_data.a2_low);
}

int32_t check_gn28l97_data() {
    return check_pages(g_st_gn28l97_data.a0, g_st_gn28l97_data.a2_low);
}

int32_t check_gn28l95_data() {
    return check_pages(g_st_gn28l95_data.a0, g_st_gn28l95_data.a2_low);
}

#include "bob/bob_checksum.h"

#include "bob/bob_chip.h"
#include "bob/bob_image.h"

#include <cstdio>

// ---- sums over tables ----

// Indexes of a table's registers, both ends included.
struct sum_range_s {
    uint8_t first;
    uint8_t last;
};

struct table_sum_row_s {
    uint16_t table; // offset of register 0x80
    uint16_t chksum;
    std::span<const sum_range_s> ranges;
};

struct marker_row_s {
    const char *name;
    uint16_t offset;
    uint8_t value;
};

// What a chip has besides the checks of the pages.
struct bob_check_plan_s {
    std::span<const table_sum_row_s> own; // the table in which it differs from its relatives
    std::span<const table_sum_row_s> tables;
    std::span<const marker_row_s> markers;
    marker_row_s total; // its value is the sum of the tables' sums; not there without them
};

// A table of a record: where its registers start and where its chksum byte stands, right behind them.
#define BOB_TABLE(record, field)                                                                                   \
    offsetof(record, field), offsetof(record, field) + sizeof(decltype(record::field)::reg)

static constexpr sum_range_s CURVE[] = {{0x00, 0x68}};

// Register 0xA1 of the UX3320S is left out on purpose, as 0x80 is.
static constexpr sum_range_s UX3320_LUT3[] = {{0x02, 0x52}};
static constexpr sum_range_s UX3320S_LUT3[] = {{0x01, 0x20}, {0x22, 0x52}};
static constexpr table_sum_row_s UX3320_SUMS[] = {
    {BOB_TABLE(bob_data_ux_s, st_bias), CURVE},
    {BOB_TABLE(bob_data_ux_s, st_mod), CURVE},
    {BOB_TABLE(bob_data_ux_s, st_apd), CURVE},
};
static constexpr marker_row_s UX3320_MARKERS[] = {
    {"LUT3.80h", offsetof(bob_data_ux_s, st_lut3), 0xAA},
    {"LUT3.DCh", offsetof(bob_data_ux_s, st_lut3) + 0x5C, 0x55},
};
static constexpr marker_row_s UX3320_TOTAL = {"LUT3.DBh", offsetof(bob_data_ux_s, st_lut3) + 0x5B, 0};

// The rows serve both records.
static_assert(offsetof(bob_data_ux_s, st_lut3) == offsetof(bob_data_ux3320s_s, st_lut3) &&
              offsetof(bob_data_ux_s, st_bias.chksum) == offsetof(bob_data_ux3320s_s, st_bias.chksum) &&
              offsetof(bob_data_ux_s, st_mod.chksum) == offsetof(bob_data_ux3320s_s, st_mod.chksum) &&
              offsetof(bob_data_ux_s, st_apd.chksum) == offsetof(bob_data_ux3320s_s, st_apd.chksum));

// Register 0xB7 and the checksum register 0xE6 of table 0x80 are left out on purpose, and only 105 of the 107
// registers of tables 0x81 to 0x83 are summed: the images in the field are made so.
static constexpr sum_range_s UX336X_APC[] = {{0x00, 0x53}, {0x56, 0x5D}, {0x63, 0x66}};
static constexpr sum_range_s UX3365_APC[] = {{0x00, 0x53}, {0x56, 0x5D}, {0x63, 0x66}, {0x6B, 0x6E}};
static constexpr sum_range_s DS[] = {{0x01, 0x36}, {0x38, 0x65}};
static constexpr sum_range_s LOS[] = {{0x00, 0x14}, {0x20, 0x2A}, {0x30, 0x37}, {0x40, 0x54}};
static constexpr sum_range_s EMP_AMP[] = {{0x00, 0x29}};
static constexpr table_sum_row_s UX336X_SUMS[] = {
    {BOB_TABLE(bob_data_ux336x_s, st_ds), DS},     {BOB_TABLE(bob_data_ux336x_s, st_bias), CURVE},
    {BOB_TABLE(bob_data_ux336x_s, st_mod), CURVE}, {BOB_TABLE(bob_data_ux336x_s, st_apd), CURVE},
    {BOB_TABLE(bob_data_ux336x_s, st_los), LOS},   {BOB_TABLE(bob_data_ux336x_s, st_emp_amp), EMP_AMP},
};
static constexpr marker_row_s UX336X_MARKERS[] = {{"T80.80h", offsetof(bob_data_ux336x_s, st_ds), 0xAA}};
static constexpr marker_row_s UX336X_TOTAL = {"T80.E6h", offsetof(bob_data_ux336x_s, st_ds) + 0x66, 0};

static constexpr table_sum_row_s UX3320_OWN[] = {{BOB_TABLE(bob_data_ux_s, st_lut3), UX3320_LUT3}};
static constexpr table_sum_row_s UX3320S_OWN[] = {{BOB_TABLE(bob_data_ux3320s_s, st_lut3), UX3320S_LUT3}};
static constexpr table_sum_row_s UX336X_OWN[] = {{BOB_TABLE(bob_data_ux336x_s, st_apc), UX336X_APC}};
static constexpr table_sum_row_s UX3365_OWN[] = {{BOB_TABLE(bob_data_ux336x_s, st_apc), UX3365_APC}};

constinit const bob_check_plan_s check_ux_data = {UX3320_OWN, UX3320_SUMS, UX3320_MARKERS, UX3320_TOTAL};
constinit const bob_check_plan_s check_ux3320s_data = {UX3320S_OWN, UX3320_SUMS, UX3320_MARKERS, UX3320_TOTAL};
constinit const bob_check_plan_s check_ux336x_data = {UX336X_OWN, UX336X_SUMS, UX336X_MARKERS, UX336X_TOTAL};
constinit const bob_check_plan_s check_ux3365_data = {UX3365_OWN, UX336X_SUMS, UX336X_MARKERS, UX336X_TOTAL};

// The GN chips have the pages only.
constinit const bob_check_plan_s check_gn25l95_data = {};
constinit const bob_check_plan_s check_gn28l97_data = {};
constinit const bob_check_plan_s check_gn28l95_data = {};

// ---- the checks of an image ----

uint8_t bob_sum(std::span<const uint8_t> bytes) {
    uint8_t sum = 0;
    for (const uint8_t byte : bytes) {
        sum = static_cast<uint8_t>(sum + byte);
    }
    return sum;
}

static constexpr size_t PAGE_CHECKS = 3;

static void add_check(bob_checks_s &result, const marker_row_s &row, uint8_t wanted, bool is_marker) {
    result.check[result.check_count++] = {row.name, row.offset, wanted, is_marker};
}

// The three checks that all records share.
static void add_page_checks(bob_checks_s &result, const bob_image_s &image) {
    const auto sum_of = [&](size_t first, size_t count) {
        return bob_sum(bob_record(image).subspan(first, count));
    };
    const auto at = [](size_t offset) { return static_cast<uint16_t>(offset); };
    add_check(result, {"A0.3Fh", at(image.a0 + 0x3F), 0}, sum_of(image.a0, 0x3F), false);
    add_check(result, {"A0.5Fh", at(image.a0 + 0x5F), 0}, sum_of(image.a0 + 0x40, 0x1F), false);
    add_check(result, {"A2.5Fh", at(image.a2_low + 0x5F), 0}, sum_of(image.a2_low, 0x5F), false);
}

// Adds a table's sum and returns it.
static uint8_t add_sum(bob_checks_s &result, const bob_image_s &image, const table_sum_row_s &row) {
    uint8_t sum = 0;
    for (const sum_range_s range : row.ranges) {
        const size_t count = range.last - range.first + size_t{1};
        sum = static_cast<uint8_t>(sum + bob_sum(bob_record(image).subspan(row.table + range.first, count)));
    }
    result.sum[result.sum_count++] = {row.chksum, sum};
    return sum;
}

bob_checks_s bob_list_checks(int32_t chip_type) {
    const bob_chip_s &chip = bob_chip(chip_type);
    bob_checks_s result = {};
    add_page_checks(result, *chip.image);
    uint8_t total = 0;
    for (const auto tables : {chip.checks->own, chip.checks->tables}) {
        for (const table_sum_row_s &table : tables) {
            total = static_cast<uint8_t>(total + add_sum(result, *chip.image, table));
        }
    }
    for (const marker_row_s &marker : chip.checks->markers) {
        add_check(result, marker, marker.value, true);
    }
    if (chip.checks->total.name != nullptr) {
        add_check(result, chip.checks->total, total, false);
    }
    return result;
}

static int32_t report_first(std::span<const bob_check_s> checks, std::span<const uint8_t> record) {
    for (const bob_check_s &check : checks) {
        const unsigned stored = record[check.offset];
        if (stored != check.wanted) {
            // A marker's value is printed in upper case, a sum's in lower case.
            printf(check.is_marker ? "checksum %s is not correct, should be [0x%X]; %s=[0x%x]\n"
                                   : "checksum %s is not correct, should be [0x%x]; %s=[0x%x]\n",
                   check.name, unsigned{check.wanted}, check.name, stored);
            return -1;
        }
    }
    return 0;
}

int32_t bob_check_image(int32_t chip_type) {
    const std::span<uint8_t> record = bob_record(*bob_chip(chip_type).image);
    const bob_checks_s list = bob_list_checks(chip_type);
    if (report_first(list.checks().first(PAGE_CHECKS), record) != 0) {
        return -1;
    }
    for (const bob_table_sum_s &sum : list.sums()) {
        record[sum.offset] = sum.wanted;
    }
    return report_first(list.checks().subspan(PAGE_CHECKS), record);
}

// The checks that a calibration image must pass before it is trusted.
#ifndef VXCLI_BOB_CHECKSUM_H
#define VXCLI_BOB_CHECKSUM_H

#include <cstddef>
#include <cstdint>
#include <span>

// ---- what is checked, by chip: see bob_chip ----

struct bob_check_plan_s;
extern const bob_check_plan_s check_ux_data;
extern const bob_check_plan_s check_ux3320s_data;
extern const bob_check_plan_s check_ux336x_data;
extern const bob_check_plan_s check_ux3365_data;
extern const bob_check_plan_s check_gn25l95_data;
extern const bob_check_plan_s check_gn28l97_data;
extern const bob_check_plan_s check_gn28l95_data;

// ---- the checks of an image ----

// One byte that is checked: what the record must hold at `offset`.
struct bob_check_s {
    const char *name; // as in messages: "A0.3Fh"
    uint16_t offset;
    uint8_t wanted;
    bool is_marker; // a constant, no sum
};

// The chksum byte of a table, which exists in files only: the tool does not check it, but computes it anew.
struct bob_table_sum_s {
    uint16_t offset;
    uint8_t wanted;
};

struct bob_checks_s {
    std::span<const bob_check_s> checks() const & { return {check, check_count}; } // in the tool's order
    std::span<const bob_table_sum_s> sums() const & { return {sum, sum_count}; }
    // A list that is only passing by would be gone before its first row is looked at.
    std::span<const bob_check_s> checks() const && = delete;
    std::span<const bob_table_sum_s> sums() const && = delete;

    bob_check_s check[6];
    bob_table_sum_s sum[7];
    size_t check_count;
    size_t sum_count;
};

// The checks of the chip's record as it is now. None covers a byte that another checks or that holds a table's
// sum, so all of them hold once each byte has what is wanted. The chip must have a record.
bob_checks_s bob_list_checks(int32_t chip_type);

// Checks the chip's record: 0, or -1 after one line about the first check that fails. Unless that is one of the
// pages' checks, the tables' fresh sums are in the record afterwards. The chip must have a record.
int32_t bob_check_image(int32_t chip_type);

// The sum modulo 256.
uint8_t bob_sum(std::span<const uint8_t> bytes);

#endif

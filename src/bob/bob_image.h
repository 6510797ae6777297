// The calibration images: one fixed record per chip family. The record is the file format, byte for byte.
#ifndef VXCLI_BOB_IMAGE_H
#define VXCLI_BOB_IMAGE_H

#include <cstddef>
#include <cstdint>
#include <span>

// ---- records ----
// reg[i] of a table is its register 0x80 + i. chksum and resv exist in files only, never in the chip.

template <size_t Regs, size_t Size>
struct bob_lut_record_s {
    uint8_t reg[Regs];
    uint8_t chksum;
    uint8_t resv[Size - Regs - 1];
};

using bob_ux_lut_s = bob_lut_record_s<105, 128>;
using bob_ux_lut3_s = bob_lut_record_s<115, 128>;
using bob_ux3320s_lut3_s = bob_lut_record_s<125, 128>;
using bob_ux336x_lut_s = bob_lut_record_s<128, 256>;
using bob_ux336x_lut1_s = bob_lut_record_s<107, 128>;
using bob_ux336x_lut2_s = bob_lut_record_s<43, 128>;
using bob_ux336x_lut3_s = bob_lut_record_s<9, 128>;

struct bob_data_ux_s {
    uint8_t a0[256];
    uint8_t a2_low[128];
    bob_ux_lut3_s st_lut3; // table 3
    bob_ux_lut_s st_bias;  // table 4
    bob_ux_lut_s st_mod;   // table 5
    bob_ux_lut_s st_apd;   // table 6
    uint8_t resv[104];
};

struct bob_data_ux3320s_s {
    uint8_t a0[256];
    uint8_t a2_low[128];
    bob_ux3320s_lut3_s st_lut3; // table 3
    bob_ux_lut_s st_bias;       // table 4
    bob_ux_lut_s st_mod;        // table 5
    bob_ux_lut_s st_apd;        // table 6
};

// A0 stands last in this one: the factory's image tools expect it there.
struct bob_data_ux336x_s {
    uint8_t a2_low[128];
    bob_ux336x_lut1_s st_bias;    // table 0x81
    bob_ux336x_lut1_s st_mod;     // table 0x82
    bob_ux336x_lut1_s st_apd;     // table 0x83
    bob_ux336x_lut_s st_ds;       // table 0x80
    bob_ux336x_lut_s st_apc;      // table 0x84
    bob_ux336x_lut_s st_los;      // table 0x85
    bob_ux336x_lut2_s st_emp_amp; // table 0x86
    bob_ux336x_lut3_s st_ci_dd;   // table 0x87
    uint8_t a0[256];
};

struct bob_data_gn_s {
    uint8_t a0[256];
    uint8_t a2_low[128];
    uint8_t st_lut0[128]; // in files only, never transferred
    uint8_t st_lut2[128];
    uint8_t st_mod[128];    // table 4
    uint8_t st_bias[128];   // table 5
    uint8_t st_apcapd[128]; // table 6
};

struct bob_data_gn28l97_s {
    uint8_t a0[256];
    uint8_t a2_low[128];
    uint8_t st_txrx[128];     // table 0x80
    uint8_t st_dig_diag[128]; // table 0x81
    uint8_t st_bias_mod[128]; // table 0x82
    uint8_t st_apc_apd[128];  // table 0x83
    uint8_t st_er_eye[128];   // table 0x84
    uint8_t st_tx_power[128]; // table 0x85
    uint8_t st_rx_input[64];  // table 0x86, registers 0x80 to 0xBF
    uint8_t st_chipid[10];    // table 0xFF, registers 0x80 to 0x89
};

struct bob_data_gn28l95_s {
    uint8_t a0[256];
    uint8_t a2_low[128];
    uint8_t st_lut2[128];
    uint8_t st_mod[128];     // table 4
    uint8_t st_bias[128];    // table 5
    uint8_t st_apcapd[128];  // table 6
    uint8_t st_trimer[128];  // table 7
    uint8_t st_eyemax[128];  // table 8
    uint8_t st_rxineq[128];  // table 9
    uint8_t st_curdark[128]; // table 10
};

static_assert(sizeof(bob_data_ux_s) == 1000 && offsetof(bob_data_ux_s, st_lut3) == 384 &&
              offsetof(bob_data_ux_s, resv) == 896);
static_assert(sizeof(bob_data_ux3320s_s) == 896 && offsetof(bob_data_ux3320s_s, st_apd) == 768);
static_assert(sizeof(bob_data_ux336x_s) == 1792 && offsetof(bob_data_ux336x_s, st_ds) == 512 &&
              offsetof(bob_data_ux336x_s, st_ci_dd) == 1408 && offsetof(bob_data_ux336x_s, a0) == 1536);
static_assert(sizeof(bob_data_gn_s) == 1024 && offsetof(bob_data_gn_s, st_apcapd) == 896);
static_assert(sizeof(bob_data_gn28l97_s) == 1226 && offsetof(bob_data_gn28l97_s, st_rx_input) == 1152 &&
              offsetof(bob_data_gn28l97_s, st_chipid) == 1216);
static_assert(sizeof(bob_data_gn28l95_s) == 1408 && offsetof(bob_data_gn28l95_s, st_curdark) == 1280);

// The one instance of each record: every load, check, transfer and save works on it.
extern bob_data_ux_s g_st_ux_data;
extern bob_data_ux3320s_s g_st_ux3320s_data;
extern bob_data_ux336x_s g_st_ux336x_data;
extern bob_data_gn_s g_st_gn_data;
extern bob_data_gn28l97_s g_st_gn28l97_data;
extern bob_data_gn28l95_s g_st_gn28l95_data;

// ---- records as data ----

// A section of the factory default text file: the lines after `keyword` fill the `size` bytes at `offset`,
// the first of which is register `first_reg`.
struct bob_section_s {
    const char *keyword;
    uint16_t offset;
    uint16_t size;
    uint8_t first_reg;
};

// One table as it is read back: `fetch` registers from the chip, the first `keep` of them to the record's
// `offset`.
struct bob_read_row_s {
    uint8_t table;
    uint16_t offset;
    uint16_t keep;
    uint16_t fetch;
};

// A register of the chip that is no calibration: zero in every image that is read back. Table 0: there is
// none.
struct bob_transient_reg_s {
    uint8_t table;
    uint8_t reg;
    uint16_t offset;
};

struct bob_image_s {
    const char *type_name; // as in the message about a short file
    void *record;
    uint16_t size;
    uint16_t a0;                             // offset of the 256 registers of A0
    uint16_t a2_low;                         // offset of the 128 registers of A2 lower
    std::span<const bob_section_s> sections; // keywords in test order
    std::span<const bob_read_row_s> read_order;
    bob_transient_reg_s transient;
};

extern const bob_image_s bob_image_ux;
extern const bob_image_s bob_image_ux3320s;
extern const bob_image_s bob_image_ux336x;
extern const bob_image_s bob_image_gn;
extern const bob_image_s bob_image_gn28l97;
extern const bob_image_s bob_image_gn28l95;

// The record's bytes.
inline std::span<uint8_t> bob_record(const bob_image_s &image) {
    return {static_cast<uint8_t *>(image.record), image.size};
}

// ---- image files ----

inline constexpr char BOB_IMAGE_FILE[] = "/var/velmarix_bob.bin";
inline constexpr char BOB_BACKUP_FILE[] = "/userconfig/config/velmarix_backup_bob.bin";

// Writes the chip's record to BOB_IMAGE_FILE. 0, or -1 after a message. A chip without a record leaves the
// file empty and succeeds: callers count on that.
int32_t save_data_to_file(int32_t chip_type);

// Fills the chip's record from the binary image at `path` and checks it. 0, or -1 after a message; the record
// then holds what was read. A chip without a record reads nothing and succeeds.
int32_t read_data_from_file(const char *path, int32_t chip_type);

#endif

#include "bob/bob_image.h"

#include "bob/bob_checksum.h"
#include "bob/bob_chip.h"

#include <algorithm>
#include <cstdio>

bob_data_ux_s g_st_ux_data;
bob_data_ux3320s_s g_st_ux3320s_data;
bob_data_ux336x_s g_st_ux336x_data;
bob_data_gn_s g_st_gn_data;
bob_data_gn28l97_s g_st_gn28l97_data;
bob_data_gn28l95_s g_st_gn28l95_data;

static_assert(sizeof(bob_ux_lut_s) == 128 && sizeof(bob_ux3320s_lut3_s) == 128 && sizeof(bob_ux336x_lut_s) == 256);

// A field of a record as offset and size, so that the rows below stay readable.
#define BOB_FIELD(record, field) offsetof(record, field), sizeof(record::field)

static constexpr uint8_t LUT = 0x80; // first register of a table

// ---- sections of the text files ----

static constexpr bob_section_s UX_SECTIONS[] = {
    {"a0_tab", BOB_FIELD(bob_data_ux_s, a0), 0},         {"a2_lower", BOB_FIELD(bob_data_ux_s, a2_low), 0},
    {"a2_lut3", BOB_FIELD(bob_data_ux_s, st_lut3), LUT}, {"a2_bias", BOB_FIELD(bob_data_ux_s, st_bias), LUT},
    {"a2_mod", BOB_FIELD(bob_data_ux_s, st_mod), LUT},   {"a2_apd", BOB_FIELD(bob_data_ux_s, st_apd), LUT},
};

static constexpr bob_section_s UX3320S_SECTIONS[] = {
    {"a0_tab", BOB_FIELD(bob_data_ux3320s_s, a0), 0},
    {"a2_lower", BOB_FIELD(bob_data_ux3320s_s, a2_low), 0},
    {"a2_lut3", BOB_FIELD(bob_data_ux3320s_s, st_lut3), LUT},
    {"a2_bias", BOB_FIELD(bob_data_ux3320s_s, st_bias), LUT},
    {"a2_mod", BOB_FIELD(bob_data_ux3320s_s, st_mod), LUT},
    {"a2_apd", BOB_FIELD(bob_data_ux3320s_s, st_apd), LUT},
};

static constexpr bob_section_s UX336X_SECTIONS[] = {
    {"a0_tab", BOB_FIELD(bob_data_ux336x_s, a0), 0},
    {"a2_lower", BOB_FIELD(bob_data_ux336x_s, a2_low), 0},
    {"a2_table80", BOB_FIELD(bob_data_ux336x_s, st_ds), LUT},
    {"a2_table81", BOB_FIELD(bob_data_ux336x_s, st_bias), LUT},
    {"a2_table82", BOB_FIELD(bob_data_ux336x_s, st_mod), LUT},
    {"a2_table83", BOB_FIELD(bob_data_ux336x_s, st_apd), LUT},
    {"a2_table84", BOB_FIELD(bob_data_ux336x_s, st_apc), LUT},
    {"a2_table85", BOB_FIELD(bob_data_ux336x_s, st_los), LUT},
    {"a2_table86", BOB_FIELD(bob_data_ux336x_s, st_emp_amp), LUT},
    {"a2_table87", BOB_FIELD(bob_data_ux336x_s, st_ci_dd), LUT},
};

static constexpr bob_section_s GN_SECTIONS[] = {
    {"a0_tab", BOB_FIELD(bob_data_gn_s, a0), 0},
    {"a2_lower", BOB_FIELD(bob_data_gn_s, a2_low), 0},
    {"a2_lut0", BOB_FIELD(bob_data_gn_s, st_lut0), LUT},
    {"a2_lut2", BOB_FIELD(bob_data_gn_s, st_lut2), LUT},
    {"a2_mod", BOB_FIELD(bob_data_gn_s, st_mod), LUT},
    {"a2_bias", BOB_FIELD(bob_data_gn_s, st_bias), LUT},
    {"a2_apcapd", BOB_FIELD(bob_data_gn_s, st_apcapd), LUT},
};

static constexpr bob_section_s GN28L97_SECTIONS[] = {
    {"a0_tab", BOB_FIELD(bob_data_gn28l97_s, a0), 0},
    {"a2_lower", BOB_FIELD(bob_data_gn28l97_s, a2_low), 0},
    {"a2_table80", BOB_FIELD(bob_data_gn28l97_s, st_txrx), LUT},
    {"a2_table81", BOB_FIELD(bob_data_gn28l97_s, st_dig_diag), LUT},
    {"a2_table82", BOB_FIELD(bob_data_gn28l97_s, st_bias_mod), LUT},
    {"a2_table83", BOB_FIELD(bob_data_gn28l97_s, st_apc_apd), LUT},
    {"a2_table84", BOB_FIELD(bob_data_gn28l97_s, st_er_eye), LUT},
    {"a2_table85", BOB_FIELD(bob_data_gn28l97_s, st_tx_power), LUT},
    {"a2_table86", BOB_FIELD(bob_data_gn28l97_s, st_rx_input), LUT},
    {"a2_tableFF", BOB_FIELD(bob_data_gn28l97_s, st_chipid), LUT},
};

static constexpr bob_section_s GN28L95_SECTIONS[] = {
    {"a0_tab", BOB_FIELD(bob_data_gn28l95_s, a0), 0},
    {"a2_lower", BOB_FIELD(bob_data_gn28l95_s, a2_low), 0},
    {"a2_lut2", BOB_FIELD(bob_data_gn28l95_s, st_lut2), LUT},
    {"a2_mod", BOB_FIELD(bob_data_gn28l95_s, st_mod), LUT},
    {"a2_bias", BOB_FIELD(bob_data_gn28l95_s, st_bias), LUT},
    {"a2_apcapd", BOB_FIELD(bob_data_gn28l95_s, st_apcapd), LUT},
    {"a2_trim", BOB_FIELD(bob_data_gn28l95_s, st_trimer), LUT},
    {"a2_eyemax", BOB_FIELD(bob_data_gn28l95_s, st_eyemax), LUT},
    {"a2_rxineq", BOB_FIELD(bob_data_gn28l95_s, st_rxineq), LUT},
    {"a2_curdark", BOB_FIELD(bob_data_gn28l95_s, st_curdark), LUT},
};

// ---- read-back, in transfer order ----

static constexpr bob_read_row_s UX_READ[] = {
    {4, offsetof(bob_data_ux_s, st_bias), 105, 105}, {5, offsetof(bob_data_ux_s, st_mod), 105, 105},
    {6, offsetof(bob_data_ux_s, st_apd), 105, 105},  {3, offsetof(bob_data_ux_s, st_lut3), 115, 128},
    {0, offsetof(bob_data_ux_s, a2_low), 128, 128},
};

static constexpr bob_read_row_s UX3320S_READ[] = {
    {4, offsetof(bob_data_ux3320s_s, st_bias), 105, 105}, {5, offsetof(bob_data_ux3320s_s, st_mod), 105, 105},
    {6, offsetof(bob_data_ux3320s_s, st_apd), 105, 105},  {3, offsetof(bob_data_ux3320s_s, st_lut3), 125, 128},
    {0, offsetof(bob_data_ux3320s_s, a2_low), 128, 128},
};

static constexpr bob_read_row_s UX336X_READ[] = {
    {0x81, offsetof(bob_data_ux336x_s, st_bias), 107, 107}, {0x82, offsetof(bob_data_ux336x_s, st_mod), 107, 107},
    {0x83, offsetof(bob_data_ux336x_s, st_apd), 107, 107},  {0x84, offsetof(bob_data_ux336x_s, st_apc), 128, 128},
    {0x85, offsetof(bob_data_ux336x_s, st_los), 128, 128},  {0x86, offsetof(bob_data_ux336x_s, st_emp_amp), 43, 43},
    {0x87, offsetof(bob_data_ux336x_s, st_ci_dd), 9, 9},    {0x80, offsetof(bob_data_ux336x_s, st_ds), 128, 128},
    {0, offsetof(bob_data_ux336x_s, a2_low), 128, 128},
};

static constexpr bob_read_row_s GN_READ[] = {
    {4, offsetof(bob_data_gn_s, st_mod), 128, 128},    {5, offsetof(bob_data_gn_s, st_bias), 128, 128},
    {6, offsetof(bob_data_gn_s, st_apcapd), 128, 128}, {2, offsetof(bob_data_gn_s, st_lut2), 128, 128},
    {0, offsetof(bob_data_gn_s, a2_low), 128, 128},
};

static constexpr bob_read_row_s GN28L97_READ[] = {
    {0x81, offsetof(bob_data_gn28l97_s, st_dig_diag), 128, 128},
    {0x82, offsetof(bob_data_gn28l97_s, st_bias_mod), 128, 128},
    {0x83, offsetof(bob_data_gn28l97_s, st_apc_apd), 128, 128},
    {0x84, offsetof(bob_data_gn28l97_s, st_er_eye), 128, 128},
    {0x85, offsetof(bob_data_gn28l97_s, st_tx_power), 128, 128},
    {0x86, offsetof(bob_data_gn28l97_s, st_rx_input), 64, 64},
    {0xFF, offsetof(bob_data_gn28l97_s, st_chipid), 10, 10},
    {0x80, offsetof(bob_data_gn28l97_s, st_txrx), 128, 128},
    {0, offsetof(bob_data_gn28l97_s, a2_low), 128, 128},
};

static constexpr bob_read_row_s GN28L95_READ[] = {
    {4, offsetof(bob_data_gn28l95_s, st_mod), 128, 128},
    {5, offsetof(bob_data_gn28l95_s, st_bias), 128, 128},
    {6, offsetof(bob_data_gn28l95_s, st_apcapd), 128, 128},
    {7, offsetof(bob_data_gn28l95_s, st_trimer), 128, 128},
    {8, offsetof(bob_data_gn28l95_s, st_eyemax), 128, 128},
    {9, offsetof(bob_data_gn28l95_s, st_rxineq), 128, 128},
    {10, offsetof(bob_data_gn28l95_s, st_curdark), 128, 128},
    {2, offsetof(bob_data_gn28l95_s, st_lut2), 128, 128},
    {0, offsetof(bob_data_gn28l95_s, a2_low), 128, 128},
};

// ---- the records ----

// The register of table 2 of the GN25L95 family that is zeroed in an image read back and before one is
// restored.
static constexpr bob_transient_reg_s GN_TRANSIENT = {2, 0xC4, offsetof(bob_data_gn_s, st_lut2) + 0xC4 - LUT};

template <typename Record>
static constexpr bob_image_s
image_of(const char *type_name, Record &record, std::span<const bob_section_s> sections,
         std::span<const bob_read_row_s> read_order, bob_transient_reg_s transient = {}) {
    return {type_name, &record,    sizeof(Record), offsetof(Record, a0), offsetof(Record, a2_low),
            sections,  read_order, transient};
}

constinit const bob_image_s bob_image_ux = image_of("bob_data_ux_s", g_st_ux_data, UX_SECTIONS, UX_READ);

constinit const bob_image_s bob_image_ux3320s =
    image_of("bob_data_ux3320s_s", g_st_ux3320s_data, UX3320S_SECTIONS, UX3320S_READ);

// The whole family reports under the UX3361's name: stations match on it.
constinit const bob_image_s bob_image_ux336x =
    image_of("bob_data_ux3361_s", g_st_ux336x_data, UX336X_SECTIONS, UX336X_READ);

constinit const bob_image_s bob_image_gn =
    image_of("bob_data_gn_s", g_st_gn_data, GN_SECTIONS, GN_READ, GN_TRANSIENT);

constinit const bob_image_s bob_image_gn28l97 =
    image_of("bob_data_gn28l97_s", g_st_gn28l97_data, GN28L97_SECTIONS, GN28L97_READ);

constinit const bob_image_s bob_image_gn28l95 =
    image_of("bob_data_gn28l95_s", g_st_gn28l95_data, GN28L95_SECTIONS, GN28L95_READ);

// Every row stays inside its record.
template <typename Record, typename Rows>
static consteval bool rows_fit(const Rows &rows) {
    return std::ranges::all_of(rows, [](const auto &row) {
        if constexpr (requires { row.keep; }) {
            return row.keep <= row.fetch && row.fetch <= 128 && row.offset + row.keep <= sizeof(Record);
        } else {
            return size_t{row.offset} + row.size <= sizeof(Record);
        }
    });
}
static_assert(rows_fit<bob_data_ux_s>(UX_SECTIONS) && rows_fit<bob_data_ux_s>(UX_READ));
static_assert(rows_fit<bob_data_ux3320s_s>(UX3320S_SECTIONS) && rows_fit<bob_data_ux3320s_s>(UX3320S_READ));
static_assert(rows_fit<bob_data_ux336x_s>(UX336X_SECTIONS) && rows_fit<bob_data_ux336x_s>(UX336X_READ));
static_assert(rows_fit<bob_data_gn_s>(GN_SECTIONS) && rows_fit<bob_data_gn_s>(GN_READ));
static_assert(rows_fit<bob_data_gn28l97_s>(GN28L97_SECTIONS) && rows_fit<bob_data_gn28l97_s>(GN28L97_READ));
static_assert(rows_fit<bob_data_gn28l95_s>(GN28L95_SECTIONS) && rows_fit<bob_data_gn28l95_s>(GN28L95_READ));

// ---- image files ----

int32_t save_data_to_file(int32_t chip_type) {
    FILE *file = fopen(BOB_IMAGE_FILE, "wb+");
    if (file == nullptr) {
        printf("bob:open file: %s fail!\n", BOB_IMAGE_FILE);
        return -1;
    }
    bool written = true;
    const bob_image_s *image = bob_chip(chip_type).image;
    if (image != nullptr) {
        written = fwrite(image->record, 1, image->size, file) == image->size;
    }
    if (fclose(file) != 0 || !written) { // what a full disk cut short must not be copied over the backup
        printf("bob:write file: %s fail!\n", BOB_IMAGE_FILE);
        return -1;
    }
    return 0;
}

int32_t read_data_from_file(const char *path, int32_t chip_type) {
    FILE *file = fopen(path, "r+");
    if (file == nullptr) {
        printf("open file: %s fail!\n", path);
        return -1;
    }
    const bob_image_s *image = bob_chip(chip_type).image;
    if (image == nullptr) {
        fclose(file);
        return 0;
    }
    std::ranges::fill(bob_record(*image), uint8_t{0});
    const size_t count = fread(image->record, 1, image->size, file);
    fclose(file);
    if (count != image->size) {
        printf("read_data_from_file [%s] failed! %s size [%d], get count [%d] \n", path, image->type_name,
               int{image->size}, static_cast<int>(count));
        return -1;
    }
    return bob_check_image(chip_type);
}

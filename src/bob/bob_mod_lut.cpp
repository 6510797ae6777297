#include "bob/bob_mod_lut.h"

#include "bob/bob_bus.h"
#include "bob/bob_chip.h"
#include "bob/bob_status.h"
#include "libvx.h"

#include <cstdio>

static constexpr bob_mod_curve REFERENCE = {
    231, 231, 231, 231, 231, 231, 231, 231, 231, 231, 231, 231, 231, 231, 231, 231, 231, 231,      // 0 to 17
    232, 232, 232, 232, 232, 232, 232, 232, 232, 232, 232, 232, 232, 232, 232, 232, 232, 232, 232, // to 36
    233, 233, 233, 233, 233, 233, 233, 233,                                                        // to 44
    234, 234, 234, 234, 234, 234, 234,                                                             // to 51
    235, 235, 235, 235, 236, 236,                                                                  // to 57
    237, 238, 239, 241, 243, 245, 246, 248, 250, 252, 253, 255, 257,                               // to 70
    259, 261, 263, 264, 265, 267, 268, 270, 272, 274, 276, 278, 280};                              // to 83
static_assert(REFERENCE[17] == 231 && REFERENCE[36] == 232 && REFERENCE[44] == 233 && REFERENCE[51] == 234 &&
              REFERENCE[55] == 235 && REFERENCE[57] == 236 && REFERENCE[58] == 237 && REFERENCE[83] == 280);

static constexpr uint8_t CODE_MIN = 65; // temperature code of index 0; two codes make one index

bob_mod_curve bob_shift_mod_curve(uint16_t setting, size_t index) {
    const int offset = setting - REFERENCE[index];
    bob_mod_curve curve = {};
    for (size_t i = 0; i < curve.size(); i++) {
        curve[i] = static_cast<uint16_t>(REFERENCE[i] + offset);
    }
    return curve;
}

std::array<uint8_t, BOB_MOD_BYTES> bob_pack_mod_curve(const bob_mod_curve &curve) {
    std::array<uint8_t, BOB_MOD_BYTES> bytes = {};
    for (size_t group = 0; group < BOB_MOD_VALUES / 4; group++) {
        const uint16_t *value = &curve[group * 4];
        uint8_t *out = &bytes[group * 5];
        out[0] = static_cast<uint8_t>(value[0] >> 2);
        out[1] = static_cast<uint8_t>((value[0] << 6) + (value[1] >> 4));
        out[2] = static_cast<uint8_t>((value[1] << 4) + (value[2] >> 6));
        out[3] = static_cast<uint8_t>((value[2] << 2) + (value[3] >> 8));
        out[4] = static_cast<uint8_t>(value[3]);
    }
    return bytes;
}

// Reads the calibrated point from table 3: its setting and its temperature code. False after a message.
static bool read_point(uint16_t *setting, uint8_t *code) {
    if (bob_switch_table(3) != 0) {
        return false;
    }
    uint8_t bytes[2] = {};
    if (libvx_ponApi_i2cRead(BOB_BUS, BOB_A2, 0x87, bytes, sizeof bytes) != 0) {
        printf("bob:read LUT3.87h fail.\n");
        return false;
    }
    if (bob_read_byte(BOB_A2, 0xE9, code) != 0) {
        printf("bob:read LUT3.E9h fail.\n");
        return false;
    }
    *setting = static_cast<uint16_t>(bytes[0] * 4 + (bytes[1] & 3));
    return true;
}

// Writes the packed table in one transfer. False after a message.
static bool write_table(const std::array<uint8_t, BOB_MOD_BYTES> &bytes) {
    if (bob_switch_table(5) != 0) {
        return false;
    }
    // The second selection belongs to the sequence.
    if (bob_switch_table(5) != 0 ||
        libvx_ponApi_i2cWrite(BOB_BUS, BOB_A2, BOB_A2_UPPER, bytes.data(), BOB_MOD_BYTES) != 0) {
        printf("bob:generate mod lut fail\n");
        return false;
    }
    printf("bob:generate mod lut SUCCESS\n");
    return true;
}

int32_t bob_generate_mod_lut(int32_t, const char *const[], const char *) {
    int32_t chip_type = 0;
    if (bob_require_chip(&chip_type) != 0) {
        return -1;
    }
    if (chip_type != BOB_UX3320) {
        printf("bob:no need to generate mod lut, only %s need it\n", bosaChips[BOB_UX3320].name);
        return 0;
    }
    uint16_t setting = 0;
    uint8_t code = 0;
    if (!read_point(&setting, &code)) {
        return -1;
    }
    if (code < CODE_MIN) {
        // 65 itself is accepted, whatever the wording says.
        printf("bob:LUT3.E9h need large than 65. LUT3.E9h = %d\n", int{code});
        return -1;
    }
    const size_t index = static_cast<size_t>(code - CODE_MIN) / 2;
    if (index >= BOB_MOD_VALUES) {
        printf("bob:index error. index = %d\n", static_cast<int>(index));
        return -1;
    }
    return write_table(bob_pack_mod_curve(bob_shift_mod_curve(setting, index))) ? 0 : -1;
}

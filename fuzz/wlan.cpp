// Wi-Fi calibration. Input: /proc/bus/pci/devices up to a NUL, a byte that says which commands follow, one that
// says whether the header's sum is put right (even) or left, then the header's slot and, behind its 256 bytes, the
// chip's.

#include "harness.h"

#include "libvx.h"
#include "wlan/wlan_chip.h"
#include "wlan/wlan_header.h"
#include "wlan/wlan_slot.h"

#include <algorithm>
#include <cstring>

static void put_header_sum(char *slot) {
    vx_cali_header_magic magic;
    memcpy(&magic, slot, sizeof magic);
    const size_t length = std::min<size_t>(get_cali_u32(magic.headerlen), cali_header_slot.bin_size - sizeof magic);
    const uint32_t sum = byte_sum({reinterpret_cast<const uint8_t *>(slot + sizeof magic), length});
    for (size_t i = 0; i < sizeof magic.headerchksum; i++) {
        slot[offsetof(vx_cali_header_magic, headerchksum) + i] = static_cast<char>(sum >> (8 * i));
    }
}

int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    static constexpr const char *commands[] = {
        "wlan show_info",
        "wlan validate_cal_data_2g",
        "wlan validate_cal_data_5g",
        "wlan e2p_in_flash 2g 34",
        "wlan e2p_in_flash 5G 4=5",
        "wlan write_cal_data_5g",
        "wlan clean_cal_data mt7603",
        "wlan validate_cal_data mt7915",
    };
    std::string_view input = as_text(data, size);
    board_reset("ux3361-mt7615-mt7603");
    const std::string_view devices = take_part(&input, '\0');
    if (devices.find_first_not_of('\n') != std::string_view::npos) {
        board_put("unit/proc/bus/pci/devices", devices); // else those of the profile
    }
    const uint8_t chosen = take_byte(&input);
    const bool put_right = take_byte(&input) % 2 == 0;
    std::string flash = board_get("flash/hwconfig");
    const std::string_view header = input.substr(0, cali_header_slot.bin_size);
    flash.replace(cali_header_slot.offset, header.size(), header);
    if (put_right) {
        put_header_sum(flash.data() + cali_header_slot.offset);
    }
    const std::string_view cal = input.substr(header.size()).substr(0, WLAN_SLOT_MAX);
    const chip_cal_info *slot = find_slot(get_cur_chip_name(WLAN_BAND_2G));
    flash.replace(slot != nullptr ? slot->offset : 0, cal.size(), cal);
    board_put("flash/hwconfig", flash);
    for (size_t i = 0; i < std::size(commands); i++) {
        if ((chosen >> i & 1) != 0) {
            run_line(commands[i]);
        }
    }
    return 0;
}

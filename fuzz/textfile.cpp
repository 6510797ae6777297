// The factory default text files. Input: a byte for the profile, one that says whether the profile's own file comes
// first (even) or not, then what follows in the file.

#include "harness.h"

#include "bob/bob_chip.h"
#include "bob/bob_textfile.h"

#include <string>

int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    std::string_view input = as_text(data, size);
    const auto &profiles = board_profiles();
    board_reset(profiles[take_byte(&input) % profiles.size()]);
    const bool behind_own = take_byte(&input) % 2 == 0;
    const std::string name = board_get("i2c/1/chip");
    int32_t type = 0;
    while (type < BOB_UNKNOWN && bob_chip(type).name != name.substr(0, name.find('\n'))) {
        type++;
    }
    const bob_chip_s &chip = bob_chip(type);
    const char *path = chip.default_file != nullptr ? chip.default_file : "/etc/none";
    const std::string place = std::string("unit") + path;
    board_put(place, (behind_own ? board_get(place) : "") + std::string(input));
    const int32_t result = read_data_from_default_file(path, type);
    must(chip.image != nullptr || result == 0, "a chip without a record reads nothing");
    if (result == 0 && chip.image != nullptr) {
        // What passed its checks passes them again, as a binary image.
        must(save_data_to_file(type) == 0 && read_data_from_file(BOB_IMAGE_FILE, type) == 0,
             "an image that was taken over can be saved and loaded");
    }
    return 0;
}

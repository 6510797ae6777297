// The binary images of the transceiver, in all the places that they come from. Input: a byte for the profile, one
// for the place, then changes to a good image, three bytes each: where, in little-endian order, and what is there
// then. The first change beyond its end cuts the image there, or makes it longer.

#include "harness.h"

#include <array>
#include <iterator>
#include <map>

static constexpr const char *places[] = {"unit/var/velmarix_bob.bin",
                                         "unit/userconfig/config/velmarix_backup_bob.bin", "unit/var/vx_bob_a0.bin",
                                         "flash/bob"};
static constexpr size_t working = 0;
static constexpr size_t flash = 3;

using images = std::array<std::string, std::size(places)>;

// What is in all these places of a unit that has been calibrated.
static const images &good_images(const std::string &profile) {
    static std::map<std::string, images> known;
    const auto [found, is_new] = known.try_emplace(profile);
    if (is_new) {
        board_reset(profile);
        run_line("bob init");
        run_line("bob save");
        for (size_t i = 0; i < std::size(places); i++) {
            found->second[i] = board_get(places[i]);
        }
    }
    return found->second;
}

int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    std::string_view input = as_text(data, size);
    const auto &profiles = board_profiles();
    const std::string &profile = profiles[take_byte(&input) % profiles.size()];
    const size_t place = take_byte(&input) % std::size(places);
    std::string image = good_images(profile)[place];
    while (input.size() >= 3) {
        const size_t low = take_byte(&input);
        const size_t index = low | static_cast<size_t>(take_byte(&input)) << 8;
        const char value = static_cast<char>(take_byte(&input));
        if (index < image.size()) {
            image[index] = value;
        } else if (place != flash) { // whose size is fixed
            image.resize(value % 2 == 0 ? index % (image.size() + 1) : index, value);
        }
    }
    board_reset(profile); // its flash is empty, so that the files count
    if (place > working) {
        board_put(places[working], "");
    }
    board_put(places[place], image);
    run_line("bob init");
    run_line("bob get 1 0x50 0 0 256");
    run_line("bob save");
    return 0;
}

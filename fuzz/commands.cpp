// The words of the command line. Input: the profile's name, then a command a line, each on what the ones before
// left of the board.

#include "harness.h"

static constexpr int commands_max = 12;

static std::string fresh_line() {
    const auto &profiles = board_profiles();
    return draw_below(10) == 0 ? profiles[draw_below(static_cast<uint32_t>(profiles.size()))] : draw_line();
}

size_t LLVMFuzzerCustomMutator(uint8_t *data, size_t size, size_t max_size, unsigned seed) {
    return change_parts(data, size, max_size, seed, '\n', fresh_line);
}

int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    std::string_view input = as_text(data, size);
    const auto &profiles = board_profiles();
    std::string_view profile = "ux3361-mt7915";
    for (const std::string &name : profiles) {
        if (input.starts_with(name + "\n")) {
            profile = take_part(&input, '\n');
            break;
        }
    }
    board_reset(profile);
    for (int i = 0; i < commands_max && !input.empty(); i++) {
        run_line(take_part(&input, '\n'));
        must(!board_has_leftovers(), "nothing half-made is left behind");
    }
    return 0;
}

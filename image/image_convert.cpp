// vximage convert.
#include "vximage.h"

#include <algorithm>

// Whether the text must set a byte that exists in files only: whatever vxcli would not come to by itself.
static bool must_be_set(const image_s &image, const bob_checks_s &list, size_t offset) {
    const uint8_t byte = image.record()[offset];
    for (const bob_table_sum_s &sum : list.sums()) {
        if (sum.offset == offset) {
            return byte != sum.wanted;
        }
    }
    return byte != 0;
}

// How many bytes behind the last section are not zero.
static size_t count_unreachable(const image_s &image) {
    size_t end = 0;
    for (const bob_section_s &section : image.layout().sections) {
        end = std::max(end, size_t{section.offset} + section.size);
    }
    const auto rest = image.record().subspan(end);
    return rest.size() - static_cast<size_t>(std::ranges::count(rest, 0));
}

static void put_as_text(const image_s &image) {
    const bob_checks_s list = bob_list_checks(image.chip_type);
    for (const bob_section_s &section : image.layout().sections) {
        const size_t registers = section_registers(image.layout(), section).count;
        output.add_format("%s\n", section.keyword);
        for (size_t i = 0; i < section.size; i++) {
            if (i < registers || must_be_set(image, list, section.offset + i)) {
                output.add_format("0x%02zX=0x%02X;\n", section.first_reg + i, image.record()[section.offset + i]);
            }
        }
    }
}

int command_convert(const options_s &options, std::span<char *const> words) {
    const image_s *image = image_load(words[0], options.chips);
    if (image == nullptr) {
        return EXIT_UNUSABLE;
    }
    output.clear();
    if (image->is_text) {
        output.add({reinterpret_cast<const char *>(image->record().data()), image->record().size()});
    } else {
        const size_t lost = count_unreachable(*image);
        if (lost != 0 && !options.drop) {
            complain("%s: %zu bytes behind the last table are not 0x00 and have no place in a text: --drop leaves "
                     "them out",
                     image->name, lost);
            return EXIT_UNUSABLE;
        }
        put_as_text(*image);
    }
    return file_write(words[1], output.text()) ? EXIT_GOOD : EXIT_UNUSABLE;
}

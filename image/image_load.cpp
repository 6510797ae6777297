// What an input is: its form, its chip, its record.
#include "vximage.h"

#include "escaped.h"
#include "flash_format.h"

#include <algorithm>
#include <cctype>
#include <cstdio>
#include <cstring>
#include <strings.h>

static image_s loaded;

// ---- chips ----

static chip_set bit_of(int32_t type) {
    return chip_set{1} << type;
}

template <typename Visit>
static void for_each_chip(chip_set chips, Visit visit) {
    for (int32_t type = 0; type < BOB_UNKNOWN; type++) {
        if ((chips & bit_of(type)) != 0 && bob_chip(type).image != nullptr) {
            visit(type);
        }
    }
}

std::optional<int32_t> chip_of_name(std::string_view name) {
    std::optional<int32_t> found;
    for_each_chip(~chip_set{}, [&](int32_t type) {
        const std::string_view known = bob_chip(type).name;
        if (known.size() == name.size() && strncasecmp(known.data(), name.data(), name.size()) == 0) {
            found = type;
        }
    });
    return found;
}

static chip_set with_record(chip_set chips) {
    chip_set result = 0;
    for_each_chip(chips, [&](int32_t type) { result |= bit_of(type); });
    return result;
}

const char *chip_names(chip_set chips) {
    static char text[200];
    chips = with_record(chips);
    size_t size = 0;
    for_each_chip(chips, [&](int32_t type) {
        chips &= ~bit_of(type);
        const char *join = size == 0 ? "" : chips == 0 ? " or " : ", ";
        size += static_cast<size_t>(snprintf(text + size, sizeof text - size, "%s%s", join, bob_chip(type).name));
    });
    return text;
}

chip_set chips_of(const bob_image_s &layout) {
    chip_set result = 0;
    for_each_chip(~chip_set{}, [&](int32_t type) { result |= bob_chip(type).image == &layout ? bit_of(type) : 0; });
    return result;
}

static int32_t first_of(chip_set chips) {
    int32_t type = 0;
    while ((chips & bit_of(type)) == 0) {
        type++;
    }
    return type;
}

size_t count_wrong(int32_t chip_type) {
    const std::span<const uint8_t> record = bob_record(*bob_chip(chip_type).image);
    const bob_checks_s list = bob_list_checks(chip_type);
    return static_cast<size_t>(std::ranges::count_if(
        list.checks(), [&](const bob_check_s &check) { return record[check.offset] != check.wanted; }));
}

static bool want_the_same(int32_t one, int32_t other) {
    const bob_checks_s first = bob_list_checks(one);
    const bob_checks_s second = bob_list_checks(other);
    return std::ranges::equal(first.checks(), second.checks(), {}, &bob_check_s::wanted, &bob_check_s::wanted);
}

// Among the chips that share the loaded record, the one with the fewest faults.
static void choose_chip(image_s &image) {
    size_t least = SIZE_MAX;
    for_each_chip(image.chips, [&](int32_t type) {
        const size_t wrong = count_wrong(type);
        if (wrong < least) {
            least = wrong;
            image.chip_type = type;
            image.rival = -1;
        } else if (wrong == least && wrong != 0 && !want_the_same(type, image.chip_type)) {
            image.rival = type;
        }
    });
}

section_registers_s section_registers(const bob_image_s &layout, const bob_section_s &section) {
    if (section.offset == layout.a0) {
        return {section.size, section_registers_s::a0, 0};
    }
    for (const bob_read_row_s &row : layout.read_order) {
        if (row.offset == section.offset) {
            const bool lower = section.offset == layout.a2_low;
            return {row.keep, lower ? section_registers_s::a2_lower : section_registers_s::table, row.table};
        }
    }
    return {section.size, section_registers_s::files_only, 0};
}

// ---- forms ----

// The chips whose record has this size.
static chip_set chips_of_size(size_t size) {
    chip_set result = 0;
    for_each_chip(~chip_set{},
                  [&](int32_t type) { result |= bob_chip(type).image->size == size ? bit_of(type) : 0; });
    return result;
}

const char *form_name(const image_s &image) {
    return image.is_text ? "text" : image.is_flash ? "record in flash" : "record";
}

static bool looks_like_text(std::string_view contents) {
    const auto is_control = [](unsigned char c) { return iscntrl(c) != 0 && isspace(c) == 0; };
    const bool plain = std::ranges::none_of(contents, is_control);
    const bool has_section =
        contents.find("a0_tab") != std::string_view::npos || contents.find("a2_") != std::string_view::npos;
    const bool has_size = chips_of_size(contents.size()) != 0;
    return has_size ? plain && has_section : plain || has_section;
}

// "UX3320 has 1000, UX3320S has 896"
static const char *sizes_of(chip_set chips) {
    static char text[300];
    chips = with_record(chips);
    size_t size = 0;
    while (chips != 0) {
        const bob_image_s &layout = *bob_chip(first_of(chips)).image;
        const chip_set alike = chips & chips_of(layout);
        size += static_cast<size_t>(snprintf(text + size, sizeof text - size, "%s%d for %s", size == 0 ? "" : "; ",
                                             int{layout.size}, chip_names(alike)));
        chips &= ~alike;
    }
    return text;
}

static bool take_record(image_s &image, chip_set chips) {
    image.chips = chips & chips_of_size(image.contents.size());
    if (image.chips == 0) {
        complain("%s: %zu bytes are no image: a record has %s", image.name, image.contents.size(), sizes_of(chips));
        return false;
    }
    memcpy(bob_chip(first_of(image.chips)).image->record, image.contents.data(), image.contents.size());
    return true;
}

static bool take_text(image_s &image, chip_set chips) {
    // A chip that was named is taken by its word, unless another one fits: the lines then tell what does not fit.
    const bool named = (chips & (chips - 1)) == 0;
    const chip_set fit = named ? text_chips(nullptr, image.contents, with_record(~chip_set{})) : 0;
    if (fit != 0 && (fit & chips) == 0) {
        complain("%s: has the sections of a %s, not those of a %s", image.name, chip_names(fit),
                 bob_chip(first_of(chips)).name);
        return false;
    }
    image.chips = named ? chips : text_chips(image.name, image.contents, with_record(chips));
    if (image.chips == 0) {
        return false;
    }
    const bob_image_s &layout = *bob_chip(first_of(image.chips)).image;
    if ((image.chips & ~chips_of(layout)) != 0) {
        complain("%s: its sections may be of %s: say which with --chip", image.name, chip_names(image.chips));
        return false;
    }
    return text_take(image.name, image.contents, layout, image.places);
}

image_s *image_load(const char *path, chip_set chips) {
    const std::optional<std::string_view> contents = file_read(path);
    if (!contents) {
        return nullptr;
    }
    if (contents->empty()) {
        complain("%s: is empty", path);
        return nullptr;
    }
    static escaped name("");
    name = escaped(path);
    const auto in_flash = flash_contents(*contents, flash_bob);
    loaded = {.name = name.text, .contents = in_flash.value_or(*contents), .is_flash = in_flash.has_value()};
    loaded.is_text = !loaded.is_flash && looks_like_text(*contents);
    if (!(loaded.is_text ? take_text(loaded, chips) : take_record(loaded, chips))) {
        return nullptr;
    }
    choose_chip(loaded);
    if (loaded.is_text) {
        // As vxcli does. What a text says about these bytes itself is kept: they come from a record.
        const bob_checks_s list = bob_list_checks(loaded.chip_type);
        for (const bob_table_sum_s &sum : list.sums()) {
            if (loaded.places[sum.offset] == 0) {
                loaded.record()[sum.offset] = sum.wanted;
            }
        }
    }
    return &loaded;
}

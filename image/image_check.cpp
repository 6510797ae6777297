// vximage check and fix.
#include "vximage.h"

#include <algorithm>
#include <cctype>
#include <cstdio>
#include <cstring>

// ---- check ----

static void say_what_it_is(const image_s &image, FILE *log) {
    const chip_set others = image.chips & ~(chip_set{1} << image.chip_type);
    fprintf(log, "%s: %s of %s", image.name, form_name(image), chip_names(image.chips));
    if (others != 0 && bob_list_checks(image.chip_type).sum_count != 0) {
        fprintf(log, ", checked as %s", bob_chip(image.chip_type).name);
    }
    fprintf(log, "\n");
}

static void note_missing_registers(const image_s &image) {
    for (const bob_section_s &section : image.layout().sections) {
        const size_t registers = section_registers(image.layout(), section).count;
        const auto places = std::span(image.places).subspan(section.offset, registers);
        const auto missing = std::ranges::count(places, 0U);
        if (missing != 0) {
            printf("%s: note: %s: %td of %zu registers are left out and loaded as 0x00\n", image.name,
                   section.keyword, missing, registers);
        }
    }
}

// The section of a checked byte or of a table's sum: there is one.
static const bob_section_s &section_at(const image_s &image, size_t offset) {
    const auto holds = [&](const bob_section_s &section) {
        return offset >= section.offset && offset < size_t{section.offset} + section.size;
    };
    return *std::ranges::find_if(image.layout().sections, holds);
}

static void note_stale_sums(const image_s &image) {
    const bob_checks_s list = bob_list_checks(image.chip_type);
    for (const bob_table_sum_s &sum : list.sums()) {
        const uint8_t stored = image.record()[sum.offset];
        if (stored != sum.wanted) {
            printf("%s: note: chksum of %s 0x%02x, vxcli loads it as 0x%02x\n", image.name,
                   section_at(image, sum.offset).keyword, stored, sum.wanted);
        }
    }
}

static int check_file(const char *path, chip_set chips) {
    const image_s *image = image_load(path, chips);
    if (image == nullptr) {
        return EXIT_UNUSABLE;
    }
    say_what_it_is(*image, stdout);
    const bob_checks_s list = bob_list_checks(image->chip_type);
    for (const bob_check_s &check : list.checks()) {
        const uint8_t stored = image->record()[check.offset];
        printf("%s: %s 0x%02x, ", image->name, check.name, stored);
        printf(stored == check.wanted ? "right\n" : "wrong: should be 0x%02x\n", check.wanted);
    }
    if (image->rival >= 0) {
        const bob_checks_s rival = bob_list_checks(image->rival);
        const bob_check_s &total = rival.checks().back();
        printf("%s: note: of a %s, %s should be 0x%02x\n", image->name, bob_chip(image->rival).name, total.name,
               total.wanted);
    }
    note_stale_sums(*image);
    if (image->is_text) {
        note_missing_registers(*image);
    }
    return count_wrong(image->chip_type) == 0 ? EXIT_GOOD : EXIT_WRONG_SUM;
}

int command_check(const options_s &options, std::span<char *const> words) {
    int status = EXIT_GOOD;
    for (const char *path : words) {
        status = std::max(status, check_file(path, options.chips));
    }
    return status;
}

// ---- fix ----

struct change_s {
    uint16_t offset;
    uint8_t value;
};

struct changes_s {
    std::array<change_s, 13> change;
    size_t count;
};

// What must change; told on `log`.
static changes_s find_changes(const image_s &image, FILE *log) {
    const bob_checks_s list = bob_list_checks(image.chip_type);
    changes_s result = {};
    for (const bob_check_s &check : list.checks()) {
        const uint8_t stored = image.record()[check.offset];
        if (stored != check.wanted) {
            fprintf(log, "%s: %s 0x%02x -> 0x%02x\n", image.name, check.name, stored, check.wanted);
            result.change[result.count++] = {check.offset, check.wanted};
        }
    }
    for (const bob_table_sum_s &sum : list.sums()) {
        const uint8_t stored = image.record()[sum.offset];
        if (stored != sum.wanted) {
            fprintf(log, "%s: chksum of %s 0x%02x -> 0x%02x\n", image.name, section_at(image, sum.offset).keyword,
                    stored, sum.wanted);
            result.change[result.count++] = {sum.offset, sum.wanted};
        }
    }
    return result;
}

// The text with new values: in place of the old ones, and behind everything for registers that it leaves out.
static void put_text(const image_s &image, std::span<change_s> changes) {
    const auto place_of = [&](const change_s &change) { return image.places[change.offset]; };
    std::ranges::sort(changes, {}, place_of);
    const auto first_set =
        std::ranges::find_if(changes, [&](const change_s &change) { return place_of(change) != 0; });
    size_t done = 0;
    for (const change_s &change : std::span(first_set, changes.end())) {
        const size_t place = place_of(change);
        output.add(slice(image.contents, done, place));
        output.add_format("0x%02X", change.value);
        done = image.contents.find(';', place);
    }
    output.add(slice(image.contents, done));
    if (first_set != changes.begin() && !image.contents.ends_with('\n')) {
        output.add("\n");
    }
    for (const change_s &change : std::span(changes.begin(), first_set)) {
        const bob_section_s &section = section_at(image, change.offset);
        output.add_format("%s\n0x%02X=0x%02X;\n", section.keyword,
                          change.offset - section.offset + section.first_reg, change.value);
    }
}

static void put_record(const image_s &image, std::span<const change_s> changes) {
    for (const change_s &change : changes) {
        image.record()[change.offset] = change.value;
    }
    output.add({reinterpret_cast<const char *>(image.record().data()), image.record().size()});
}

int command_fix(const options_s &options, std::span<char *const> words) {
    const char *target = words.back();
    FILE *log = strcmp(target, "-") == 0 ? stderr : stdout; // not into the image
    image_s *image = image_load(words.front(), options.chips);
    if (image == nullptr) {
        return EXIT_UNUSABLE;
    }
    if (image->is_flash && words.size() == 1) {
        complain("%s: is a flash partition: say where the record is to go, \"vximage fix FILE OUT\"", image->name);
        return EXIT_UNUSABLE;
    }
    if (image->rival >= 0) {
        complain("%s: may be of %s, which sum differently: say which with --chip", image->name,
                 chip_names(image->chips));
        return EXIT_UNUSABLE;
    }
    say_what_it_is(*image, log);
    changes_s changes = find_changes(*image, log);
    const std::span<change_s> list = std::span(changes.change).first(changes.count);
    if (list.empty()) {
        fprintf(log, "%s: nothing to fix\n", image->name);
        if (words.size() == 1 && log == stdout) {
            return EXIT_GOOD;
        }
    }
    output.clear();
    if (image->is_text) {
        put_text(*image, list);
        // What comes out is read like anybody's: a line may have become too long.
        if (!output.ok || !text_take(target, output.text(), image->layout(), image->places)) {
            complain("%s: cannot be fixed: nothing is changed", image->name);
            return EXIT_UNUSABLE;
        }
    } else {
        put_record(*image, list);
    }
    if (count_wrong(image->chip_type) != 0) {
        complain("%s: cannot be fixed: nothing is changed", image->name);
        return EXIT_UNUSABLE;
    }
    return file_write(target, output.text()) ? EXIT_GOOD : EXIT_UNUSABLE;
}

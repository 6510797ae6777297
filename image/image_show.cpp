// vximage show.
#include "vximage.h"

#include <algorithm>
#include <cstdio>

// What stands in front of a byte: "*" if it is checked and right, "!" if it is checked and wrong.
static char mark_of(std::span<const bob_check_s> checks, size_t offset, uint8_t byte) {
    for (const bob_check_s &check : checks) {
        if (check.offset == offset) {
            return byte == check.wanted ? '*' : '!';
        }
    }
    return ' ';
}

// `bytes` stand at `offset` in the record; the first one is called `number`.
static void dump(std::span<const uint8_t> bytes, size_t offset, size_t number,
                 std::span<const bob_check_s> checks) {
    for (size_t start = 0; start < bytes.size(); start += 16) {
        char text[17] = {};
        printf("  %02zx:", number + start);
        for (size_t i = 0; i < 16; i++) {
            if (start + i >= bytes.size()) {
                printf("   ");
                continue;
            }
            const uint8_t byte = bytes[start + i];
            printf("%c%02x", mark_of(checks, offset + start + i, byte), byte);
            text[i] = byte >= 0x20 && byte < 0x7F ? static_cast<char>(byte) : '.';
        }
        printf("  %s\n", text);
    }
}

// Bytes that only files have.
static void show_file_bytes(const image_s &image, size_t offset, size_t count) {
    const auto bytes = image.record().subspan(offset, count);
    if (std::ranges::count(bytes, 0) == static_cast<std::ptrdiff_t>(count)) {
        printf("  in files only: %zu bytes, all 00\n", count);
        return;
    }
    printf("  in files only: %zu bytes, by place in the record:\n", count);
    dump(bytes, offset, offset, {});
}

static void show_title(const bob_section_s &section, const section_registers_s &registers) {
    switch (registers.page) {
    case section_registers_s::a0:
        printf("\nA0");
        break;
    case section_registers_s::a2_lower:
        printf("\nA2 lower");
        break;
    case section_registers_s::table:
        printf("\nTable 0x%02x", registers.number);
        break;
    case section_registers_s::files_only:
        printf("\nA table of files only, never in the chip");
        break;
    }
    printf(" (%s), at %d in the record\n", section.keyword, section.offset);
}

static void show_section(const image_s &image, const bob_checks_s &list, const bob_section_s &section) {
    const section_registers_s registers = section_registers(image.layout(), section);
    const auto record = image.record();
    const size_t end = size_t{section.offset} + section.size;
    show_title(section, registers);
    dump(record.subspan(section.offset, registers.count), section.offset, section.first_reg, list.checks());
    for (const bob_check_s &check : list.checks()) {
        if (check.offset >= section.offset && check.offset < end) {
            printf("  %s 0x%02x, ", check.name, record[check.offset]);
            printf(record[check.offset] == check.wanted ? "right\n" : "wrong: should be 0x%02x\n", check.wanted);
        }
    }
    size_t rest = section.offset + registers.count;
    for (const bob_table_sum_s &sum : list.sums()) {
        if (sum.offset == rest) {
            printf("  in files only: chksum 0x%02x", record[rest]);
            printf(record[rest] == sum.wanted ? "\n" : ", vxcli loads it as 0x%02x\n", sum.wanted);
            rest++;
            break;
        }
    }
    if (rest < end) {
        show_file_bytes(image, rest, end - rest);
    }
}

int command_show(const options_s &options, std::span<char *const> words) {
    const image_s *image = image_load(words[0], options.chips);
    if (image == nullptr) {
        return EXIT_UNUSABLE;
    }
    const bob_checks_s list = bob_list_checks(image->chip_type);
    printf("%s: %s of %s\n", image->name, form_name(*image), chip_names(image->chips));
    size_t end = 0;
    for (const bob_section_s &section : image->layout().sections) {
        show_section(*image, list, section);
        end = std::max(end, size_t{section.offset} + section.size);
    }
    if (end < image->record().size()) {
        printf("\nBehind the tables, at %zu in the record\n", end);
        show_file_bytes(*image, end, image->record().size() - end);
    }
    return EXIT_GOOD;
}

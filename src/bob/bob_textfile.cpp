#include "bob/bob_textfile.h"

#include "bob/bob_checksum.h"
#include "bob/bob_chip.h"

#include <algorithm>
#include <cctype>
#include <cstdio>
#include <cstdlib>
#include <cstring>

// A longer line is read in pieces of this size less one, each a line of its own.
static constexpr size_t LINE_SIZE = 128;

// The number that takes up all of [text, end), in the base that it announces; nothing when it does not.
static std::optional<uint64_t> parse_number(const char *text, const char *end) {
    char *stop = nullptr;
    const unsigned long value = strtoul(text, &stop, 0);
    if (stop == text || stop != end) {
        return std::nullopt;
    }
    return value;
}

std::optional<bob_assignment_s> bob_parse_assignment(const char *line) {
    const char *end = line + strcspn(line, ";");
    const char *equals = line + strcspn(line, "=");
    if (equals >= end || isspace(static_cast<unsigned char>(equals[1])) != 0) {
        return std::nullopt;
    }
    const std::optional<uint64_t> reg = parse_number(line, equals);
    const std::optional<uint64_t> value = parse_number(equals + 1, end);
    if (!reg || !value) {
        return std::nullopt;
    }
    return bob_assignment_s{*reg, *value};
}

const bob_section_s *bob_take_line(const char *line, std::span<const bob_section_s> sections,
                                   const bob_section_s *section, std::span<uint8_t> record) {
    for (const bob_section_s &candidate : sections) {
        if (strstr(line, candidate.keyword) != nullptr) {
            return &candidate;
        }
    }
    const std::optional<bob_assignment_s> assignment = bob_parse_assignment(line);
    if (section == nullptr || !assignment || assignment->reg < section->first_reg) {
        return section;
    }
    const uint64_t index = assignment->reg - section->first_reg;
    if (index < section->size) {
        record[section->offset + index] = static_cast<uint8_t>(assignment->value);
    }
    return section;
}

int32_t read_data_from_default_file(const char *path, int32_t chip_type) {
    FILE *file = fopen(path, "r+");
    if (file == nullptr) {
        printf("bob:open file: %s fail!\n", path);
        return -1;
    }
    const bob_image_s *image = bob_chip(chip_type).image;
    if (image == nullptr) {
        fclose(file);
        return 0;
    }
    const std::span<uint8_t> record = bob_record(*image);
    std::ranges::fill(record, uint8_t{0});
    const bob_section_s *section = nullptr;
    char line[LINE_SIZE];
    while (fgets(line, sizeof line, file) != nullptr) {
        section = bob_take_line(line, image->sections, section, record);
    }
    fclose(file);
    return bob_check_image(chip_type);
}

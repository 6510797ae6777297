// The text form, read as vxcli reads it, but with a complaint where vxcli would skip or misread a line.
#include "vximage.h"

#include "bob/bob_textfile.h"

#include <algorithm>
#include <cctype>
#include <cstdarg>
#include <cstdio>
#include <cstring>

static constexpr size_t LINE_LIMIT = 127; // vxcli reads what is longer in pieces
static constexpr unsigned FAULT_LIMIT = 20;

struct text_line {
    unsigned number;
    size_t start; // in the text
    std::string_view text;
};

// The line behind `line`, or the first one if that is numbered 0. False at the end.
static bool next_line(std::string_view text, text_line &line) {
    const size_t start = line.number == 0 ? 0 : line.start + line.text.size() + 1;
    if (start >= text.size()) {
        return false;
    }
    line = {line.number + 1, start, slice(text, start, text.find('\n', start))};
    return true;
}

// The next word of the line that looks like a section's keyword; empty when there is none. A line with an
// assignment or with a comment behind ";" has no such words.
static std::string_view next_section_word(std::string_view &rest) {
    const auto in_word = [](char c) { return isalnum(static_cast<unsigned char>(c)) != 0 || c == '_'; };
    if (rest.find_first_of(";=") != std::string_view::npos) {
        return {};
    }
    while (!rest.empty()) {
        const size_t start = static_cast<size_t>(std::ranges::find_if(rest, in_word) - rest.begin());
        rest.remove_prefix(start);
        const size_t size = static_cast<size_t>(std::ranges::find_if_not(rest, in_word) - rest.begin());
        const std::string_view word = slice(rest, 0, size);
        rest.remove_prefix(size);
        if (word.find("a0_") != std::string_view::npos || word.find("a2_") != std::string_view::npos) {
            return word;
        }
    }
    return {};
}

chip_set text_chips(const char *name, std::string_view text, chip_set chips) {
    bool any = false;
    for (text_line line = {}; next_line(text, line);) {
        std::string_view rest = line.text;
        for (std::string_view word; !(word = next_section_word(rest)).empty();) {
            any = true;
            for (int32_t type = 0; type < BOB_UNKNOWN; type++) {
                const bob_image_s *image = bob_chip(type).image;
                if (image == nullptr || std::ranges::none_of(image->sections, [&](const bob_section_s &section) {
                        return word == section.keyword;
                    })) {
                    chips &= ~(chip_set{1} << type);
                }
            }
            if (chips == 0 && name != nullptr) {
                complain("%s:%u: no chip has \"%.*s\" beside the sections before it: say which it is with --chip",
                         name, line.number, static_cast<int>(word.size()), word.data());
            }
            if (chips == 0) {
                return 0;
            }
        }
    }
    if (!any && name != nullptr) {
        complain("%s: is no image: neither a record nor a text with a section such as \"a0_tab\"", name);
    }
    return any ? chips : 0;
}

// ---- line by line ----

struct text_reader {
    const char *name;
    std::string_view text;
    const bob_image_s &layout;
    text_places &places;
    text_line line = {};
    const bob_section_s *section = nullptr;
    bool lost = false; // behind an unknown section: nothing can be said about its registers
    unsigned faults = 0;
};

[[gnu::format(printf, 2, 3)]] static void fault(text_reader &reader, const char *format, ...) {
    char what[256];
    va_list words;
    va_start(words, format);
    vsnprintf(what, sizeof what, format, words);
    va_end(words);
    complain("%s:%u: %s", reader.name, reader.line.number, what);
    reader.faults++;
}

static bool is_comment(const char *line) {
    const char *start = line + strspn(line, " \t\r");
    return *start == '\0' || *start == ';' || *start == '#' || strncmp(start, "//", 2) == 0;
}

static bool has_section_words(text_reader &reader, const char *keyword) {
    std::string_view rest = reader.line.text;
    bool any = false;
    for (std::string_view word; !(word = next_section_word(rest)).empty(); any = true) {
        if (keyword == nullptr) {
            fault(reader, "unknown section \"%.*s\"", static_cast<int>(word.size()), word.data());
            reader.lost = true;
        } else if (word != keyword) {
            fault(reader, "vxcli takes this line for the section %s, not for \"%.*s\"", keyword,
                  static_cast<int>(word.size()), word.data());
        }
    }
    return any;
}

// A line that vxcli takes for the start of a section, whatever else is on it.
static void check_section_line(text_reader &reader, const char *keyword) {
    if (!has_section_words(reader, keyword)) {
        fault(reader, "vxcli takes this line for the start of the section %s", keyword);
    }
}

static unsigned line_of(const text_reader &reader, size_t place) {
    return 1 + static_cast<unsigned>(std::ranges::count(slice(reader.text, 0, place), '\n'));
}

static void check_assignment(text_reader &reader, const char *line, const bob_assignment_s &assignment) {
    const bob_section_s *section = reader.section;
    if (section == nullptr) {
        fault(reader, "a register before the first section");
        return;
    }
    const unsigned last = section->first_reg + section->size - 1U;
    if (assignment.reg < section->first_reg || assignment.reg > last) {
        fault(reader, "register 0x%02llx is not in %s: it has 0x%02x to 0x%02x",
              static_cast<unsigned long long>(assignment.reg), section->keyword, unsigned{section->first_reg},
              last);
        return;
    }
    if (assignment.value > 0xFF) {
        fault(reader, "the value 0x%llx is above 0xFF", static_cast<unsigned long long>(assignment.value));
    }
    uint32_t &place = reader.places[section->offset + assignment.reg - section->first_reg];
    if (place != 0) {
        fault(reader, "register 0x%02llx of %s is set in line %u already",
              static_cast<unsigned long long>(assignment.reg), section->keyword, line_of(reader, place));
    }
    place = static_cast<uint32_t>(reader.line.start + strcspn(line, "=") + 1);
    const char *behind = line + strcspn(line, ";");
    if (*behind == '\0') {
        fault(reader, "no \";\" behind the value");
    } else if (bob_parse_assignment(behind + 1)) {
        fault(reader, "vxcli takes only the first assignment on a line");
    }
}

static void take_line(text_reader &reader, const char *line) {
    const auto keyword = std::ranges::find_if(reader.layout.sections, [&](const bob_section_s &section) {
        return strstr(line, section.keyword) != nullptr;
    });
    if (keyword != reader.layout.sections.end()) {
        check_section_line(reader, keyword->keyword);
        reader.lost = false;
    } else if (const std::optional<bob_assignment_s> assignment = bob_parse_assignment(line)) {
        if (!reader.lost) {
            check_assignment(reader, line, *assignment);
        }
    } else if (!has_section_words(reader, nullptr) && !is_comment(line)) {
        fault(reader, strchr(line, '=') != nullptr
                          ? "not read by vxcli: it must be \"0x10=0x5A;\", without blanks and with the \";\""
                          : "neither a section, nor an assignment (\"0x10=0x5A;\"), nor a comment");
    }
    reader.section = bob_take_line(line, reader.layout.sections, reader.section, bob_record(reader.layout));
}

// A line that vxcli gets as it is.
static bool is_readable(text_reader &reader) {
    std::string_view text = reader.line.text;
    if (text.size() > LINE_LIMIT) {
        fault(reader, "more than %zu characters: vxcli reads the rest as another line", LINE_LIMIT);
        return false;
    }
    if (text.ends_with('\r')) {
        text.remove_suffix(1);
    }
    for (const char c : text) {
        const auto code = static_cast<unsigned char>(c);
        if ((code < ' ' && c != '\t') || code == 0x7F) {
            fault(reader, "a control character, 0x%02x", unsigned{code});
            return false;
        }
    }
    return true;
}

bool text_take(const char *name, std::string_view text, const bob_image_s &layout, text_places &places) {
    std::ranges::fill(bob_record(layout), uint8_t{0});
    places = {};
    text_reader reader = {.name = name, .text = text, .layout = layout, .places = places};
    while (reader.faults < FAULT_LIMIT && next_line(text, reader.line)) {
        if (is_readable(reader)) {
            char line[LINE_LIMIT + 1] = {};
            memcpy(line, reader.line.text.data(), reader.line.text.size());
            take_line(reader, line);
        }
    }
    if (reader.faults >= FAULT_LIMIT) {
        complain("%s: is not read any further", name);
    }
    return reader.faults == 0;
}

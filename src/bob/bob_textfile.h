// The factory default images: text files, one register per line, in sections named after the chip's pages.
#ifndef VXCLI_BOB_TEXTFILE_H
#define VXCLI_BOB_TEXTFILE_H

#include <cstdint>
#include <optional>
#include <span>

#include "bob/bob_image.h"

struct bob_assignment_s {
    uint64_t reg;
    uint64_t value; // its low 8 bits are what is stored
};

// A data line ("0x10=0x5A;") as register and value; nothing for a line that is none: no ";" before trailing
// characters, an empty number, blanks around "=".
std::optional<bob_assignment_s> bob_parse_assignment(const char *line);

// Takes one line into `record`. `section` is the section in force, null before the first keyword; the result
// is the one in force after the line. Registers outside the section's field are ignored.
const bob_section_s *bob_take_line(const char *line, std::span<const bob_section_s> sections,
                                   const bob_section_s *section, std::span<uint8_t> record);

// Fills the chip's record from the text file at `path` and checks it: 0, or -1 after a message. The record is
// cleared first. A chip without a record succeeds without reading.
int32_t read_data_from_default_file(const char *path, int32_t chip_type);

#endif

#include "bob/bob_textfile.h"

#include <algorithm>
#include <gtest/gtest.h>

struct line_case {
    const char *line;
    std::optional<bob_assignment_s> result;
};

TEST(TextFile, DataLines) {
    static const line_case cases[] = {
        {"16=032;\n", {{16, 26}}},
        {"0x10=0x5A; a comment; 1=2;\r\n", {{0x10, 0x5A}}},
        {"0x10=0x1FF;\n", {{0x10, 0x1FF}}},
        {"0x10=0x5A\n", {}},
        {"0x10=0x5A", {{0x10, 0x5A}}}, // the file's last line: nothing trails
        {"0x10 =0x20;\n", {}},
        {"0x10= 0x20;\n", {}},
        {"0x10=;\n", {}},
        {"=0x20;\n", {}},
        {";0x10=0x20;\n", {}},
        {"0x10;=0x20;\n", {}},
        {"0x10==0x20;\n", {}},
        {"", {}},
    };
    for (const line_case &row : cases) {
        const std::optional<bob_assignment_s> result = bob_parse_assignment(row.line);
        ASSERT_EQ(result.has_value(), row.result.has_value()) << row.line;
        if (result) {
            EXPECT_EQ(result->reg, row.result->reg) << row.line;
            EXPECT_EQ(result->value, row.result->value) << row.line;
        }
    }
}

// One file's lines; everything is stored as 0x5A and must end up at exactly these offsets of the record.
struct section_case {
    const bob_image_s *image;
    std::vector<const char *> lines;
    std::vector<size_t> offsets;
};

TEST(TextFile, SectionsAndTheirBounds) {
    static const section_case cases[] = {
        {&bob_image_ux, {"0x10=0x5A;"}, {}}, // no keyword yet
        {&bob_image_ux, {"a0_tab", "0=0x5A;", "0xff=0x15A;", "0x100=0x5A;", "-1=0x5A;"}, {0, 255}},
        {&bob_image_ux, {"## a2_lut3 table", "0x80=0x5A;", "0x7f=0x5A;", "0xff=0x5A;", "0x100=0x5A;"}, {384, 511}},
        {&bob_image_ux, {"a2_bias 0x90=0x5A;", "0x81=0x5A;"}, {512 + 1}}, // a keyword's line carries no data
        {&bob_image_ux, {"a2_apd a2_mod", "0x80=0x5A;"}, {640}},          // the first in test order wins
        {&bob_image_ux3320s, {"a2_apd", "0xe8=0x5A;"}, {768 + 0x68}},
        {&bob_image_gn28l97, {"a2_lower", "1=0x5A;", "a2_lut2", "2=0x5A;"}, {257, 258}},
        {&bob_image_ux336x, {"a2_table84", "0x17f=0x5A;", "0x180=0x5A;"}, {768 + 255}},
    };
    for (const section_case &row : cases) {
        std::vector<uint8_t> record(row.image->size);
        std::vector<uint8_t> wanted(row.image->size);
        for (const size_t offset : row.offsets) {
            wanted[offset] = 0x5A;
        }
        const bob_section_s *section = nullptr;
        for (const char *line : row.lines) {
            section = bob_take_line(line, row.image->sections, section, record);
        }
        EXPECT_EQ(record, wanted) << row.image->type_name << ' ' << row.lines.front();
    }
}

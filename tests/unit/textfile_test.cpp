#include "bob/bob_textfile.h"

#include <algorithm>
#include <gtest/gtest.h>

struct line_case {
    const char *line;
    std::optional<bob_assignment_s> result;
};

TEST(TextFile, DataLines) {
    static const line_case cases[] = {
        {"0x10=0x5A;\n", {{0x10, 0x5A}}},
        {"16=032;\n", {{16, 26}}},
        {"0x10=0x5A; a comment; 1=2;\r\n", {{0x10, 0x5A}}},
        {"0x10=0x1FF;\n", {{0x10, 0xFF}}},
        {"0x10=0x5A\n", {}},
        {"0x10=0x5A", {{0x10, 0x5A}}}, // the file's last line: nothing trails
        {"0x10 =0x20;\n", {}},
        {"0x10= 0x20;\n", {}},
        {"0x10=0x20 ;\n", {}},
        {"0x10=\t0x20;\n", {}},
        {"0x10=;\n", {}},
        {"=0x20;\n", {}},
        {"0x10;\n", {}},
        {";0x10=0x20;\n", {}},
        {"0x10;=0x20;\n", {}},
        {"0x10==0x20;\n", {}},
        {"0x10=0x20h;\n", {}},
        {"0x1G=0x20;\n", {}},
        {"08=1;\n", {}},
        {"\n", {}},
        {"", {}},
        {";\n", {}},
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
        {&bob_image_ux, {"a0_tab", "0=0x5A;", "0xff=0x5A;", "0x100=0x5A;", "-1=0x5A;"}, {0, 255}},
        {&bob_image_ux, {"a2_lower", "0x7f=0x5A;", "0x80=0x5A;"}, {256 + 127}},
        {&bob_image_ux, {"## a2_lut3 table", "0x80=0x5A;", "0x7f=0x5A;", "0xff=0x5A;", "0x100=0x5A;"}, {384, 511}},
        {&bob_image_ux, {"a2_bias 0x90=0x5A;", "0x81=0x5A;"}, {512 + 1}}, // a keyword's line carries no data
        {&bob_image_ux, {"a2_apd a2_mod", "0x80=0x5A;"}, {640}},          // the first in test order wins
        {&bob_image_ux3320s, {"a2_apd", "0xe8=0x5A;"}, {768 + 0x68}},
        {&bob_image_gn, {"a2_lut0", "0x80=0x5A;", "a2_apcapd", "0xff=0x5A;"}, {384, 896 + 127}},
        {&bob_image_gn,
         {"a2_bias", "0x80=0x5A;", "a2_mod", "0x80=0x5A;", "a2_lut2", "0xc4=0x5A;"},
         {768, 640, 512 + 0x44}},
        {&bob_image_gn28l97, {"a2_lower", "1=0x5A;", "a2_lut2", "2=0x5A;"}, {257, 258}},
        {&bob_image_gn28l97, {"a2_table86", "0xbf=0x5A;", "0xc0=0x5A;"}, {1215}},
        {&bob_image_gn28l97, {"a2_tableFF", "0x89=0x5A;", "0x8a=0x5A;"}, {1225}},
        {&bob_image_gn28l97, {"a2_table80", "0x80=0x5A;", "a2_table85", "0xff=0x5A;"}, {384, 1151}},
        {&bob_image_gn28l95, {"a2_trim", "0x80=0x5A;", "a2_curdark", "0xff=0x5A;"}, {896, 1407}},
        {&bob_image_gn28l95, {"a2_eyemax", "0x80=0x5A;", "a2_rxineq", "0x80=0x5A;"}, {1024, 1152}},
        {&bob_image_ux336x, {"a0_tab", "0=0x5A;", "a2_lower", "0=0x5A;"}, {1536, 0}},
        {&bob_image_ux336x, {"a2_table80", "0x80=0x5A;", "a2_table87", "0x80=0x5A;"}, {512, 1408}},
        {&bob_image_ux336x,
         {"a2_table86", "0xff=0x5A;", "0x100=0x5A;"},
         {1280 + 127}}, // with the bytes of the file only
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

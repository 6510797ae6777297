#include "bob/bob_checksum.h"
#include "bob/bob_chip.h"

#include <gtest/gtest.h>

struct range {
    size_t first;
    size_t last;
};

// The bytes of a chip's record that decide about its check, by offset in the file: in none of these may a single
// changed byte go unnoticed, and any other byte may hold anything.
struct coverage_case {
    int32_t type;
    std::vector<std::pair<size_t, uint8_t>> markers;
    std::vector<range> covered;
    std::vector<range> own; // what it covers besides its family's
};

static const std::vector<range> pages = {{0, 0x5F}, {256, 256 + 0x5F}};
// What the UX3320 and the UX3320S have in common.
static const std::vector<range> ux3320 = {
    {0, 0x5F},         {256, 256 + 0x5F}, {384, 384},       {384 + 0x5B, 384 + 0x5C}, {384 + 0x22, 384 + 0x52},
    {512, 512 + 0x68}, {640, 640 + 0x68}, {768, 768 + 0x68}};
// clang-format off
static const std::vector<range> ux336x = {
    {0, 0x5F}, {128, 128 + 0x68}, {256, 256 + 0x68}, {384, 384 + 0x68}, {512, 512 + 0x36}, {512 + 0x38, 512 + 0x66},
    {768, 768 + 0x53}, {768 + 0x56, 768 + 0x5D}, {768 + 0x63, 768 + 0x66}, {1024, 1024 + 0x14},
    {1024 + 0x20, 1024 + 0x2A}, {1024 + 0x30, 1024 + 0x37}, {1024 + 0x40, 1024 + 0x54}, {1280, 1280 + 0x29},
    {1536, 1536 + 0x5F}};
// clang-format on

static const coverage_case coverage[] = {
    {BOB_UX3320, {{384, 0xAA}, {384 + 0x5C, 0x55}}, ux3320, {{384 + 0x02, 384 + 0x21}}},
    {BOB_UX3320S, {{384, 0xAA}, {384 + 0x5C, 0x55}}, ux3320, {{384 + 0x01, 384 + 0x20}}},
    {BOB_UX3361, {{512, 0xAA}}, ux336x, {}},
    {BOB_UX3362S, {{512, 0xAA}}, ux336x, {}},
    {BOB_UX3365, {{512, 0xAA}}, ux336x, {{768 + 0x6B, 768 + 0x6E}}},
    {BOB_GN25L95D, {}, pages, {}},
    {BOB_GN28L96, {}, pages, {}},
    {BOB_GN28L95, {}, pages, {}},
};

TEST(Checksums, CoverExactlyTheseBytes) {
    for (const coverage_case &row : coverage) {
        const bob_image_s &image = *bob_chip(row.type).image;
        const std::span<uint8_t> record = bob_record(image);
        std::vector<bool> covered(image.size);
        std::vector<range> parts = row.covered;
        parts.insert(parts.end(), row.own.begin(), row.own.end());
        for (const range &part : parts) {
            std::fill(covered.begin() + static_cast<long>(part.first),
                      covered.begin() + static_cast<long>(part.last) + 1, true);
        }
        std::vector<size_t> wrong;
        for (size_t offset = 0; offset < image.size; offset++) {
            // All zero but for the markers is a good record of every chip.
            std::fill(record.begin(), record.end(), uint8_t{0});
            for (const auto &[place, value] : row.markers) {
                record[place] = value;
            }
            record[offset] = static_cast<uint8_t>(record[offset] + 1);
            testing::internal::CaptureStdout();
            const bool refused = bob_check_image(row.type) != 0;
            const std::string text = testing::internal::GetCapturedStdout();
            if (refused != covered[offset] || refused == text.empty()) {
                wrong.push_back(offset);
            }
        }
        EXPECT_EQ(wrong, std::vector<size_t>()) << bob_chip(row.type).name;
    }
}

struct message_case {
    int32_t type;
    std::vector<std::pair<size_t, uint8_t>> bytes;
    const char *text;
};

// The first failing check speaks, and only that one.
TEST(Checksums, Messages) {
    static const message_case cases[] = {
        {BOB_GN25L95,
         {{0, 0x12}, {0x40, 1}, {256, 1}},
         "checksum A0.3Fh is not correct, should be [0x12]; A0.3Fh=[0x0]\n"},
        {BOB_GN28L97B,
         {{0x3E, 0xFF}, {0x3F, 0xFF}, {0x5E, 9}, {0x5F, 0x1A}, {256, 1}},
         "checksum A0.5Fh is not correct, should be [0x9]; A0.5Fh=[0x1a]\n"},
        {BOB_UX3320S, {{384, 0xAA}}, "checksum LUT3.DCh is not correct, should be [0x55]; LUT3.DCh=[0x0]\n"},
        {BOB_UX3362S, {{512, 0x0b}}, "checksum T80.80h is not correct, should be [0xAA]; T80.80h=[0xb]\n"},
        {BOB_UX3365,
         {{512, 0xAA}, {768 + 0x6E, 0xE1}},
         "checksum T80.E6h is not correct, should be [0xe1]; T80.E6h=[0x0]\n"},
    };
    for (const message_case &row : cases) {
        const bob_image_s &image = *bob_chip(row.type).image;
        const std::span<uint8_t> record = bob_record(image);
        std::fill(record.begin(), record.end(), uint8_t{0});
        for (const auto &[offset, value] : row.bytes) {
            record[offset] = value;
        }
        testing::internal::CaptureStdout();
        const int32_t result = bob_check_image(row.type);
        EXPECT_EQ(testing::internal::GetCapturedStdout(), row.text);
        EXPECT_EQ(result, -1) << row.text;
    }
}

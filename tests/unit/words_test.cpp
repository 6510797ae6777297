#include "common/words.h"
#include "vxcli.h"

#include <climits>
#include <gtest/gtest.h>

struct word_case {
    const char *word;
    std::optional<uint32_t> low32;
    std::optional<int64_t> whole;
};

TEST(Words, ReadWholeInTheBaseTheyAnnounce) {
    static const word_case cases[] = {
        {"0", 0, 0},
        {"0XfF", 255, 255},
        {"0120", 80, 80},
        {"-1", 0xFFFFFFFF, -1},
        {"0x100000050", 0x50, 0x100000050},
        {"99999999999999999999999", 0xFFFFFFFF, LLONG_MAX},
        {"-99999999999999999999999", 0xFFFFFFFF, LLONG_MIN},
        {"", {}, {}},
        {" ", {}, {}},
        {"0x", {}, {}},
        {"0x5g", {}, {}},
        {"08", {}, {}},
        {"1 ", {}, {}},
    };
    for (const word_case &row : cases) {
        EXPECT_EQ(word_to_u32(row.word), row.low32) << '"' << row.word << '"';
        EXPECT_EQ(word_to_i64(row.word), row.whole) << '"' << row.word << '"';
    }
}

TEST(BadArguments, NamesTheWordAndTheHelp) {
    testing::internal::CaptureStdout();
    show_bad_arguments("12x", "led : set a led");
    show_bad_arguments("", nullptr);
    EXPECT_EQ(testing::internal::GetCapturedStdout(),
              "bad arguments  12x !!\n\tled : set a led\nbad arguments   !!\n\tnull\n");
}

#include "fake_libvx.h"

#include "bob/bob_bus.h"

#include <gtest/gtest.h>

using paged_write = int32_t (*)(uint32_t, uint32_t, uint32_t, const uint8_t *, uint32_t);

struct paging_case {
    paged_write write;
    uint32_t reg;
    uint32_t length;
    int failing;
    int32_t result;
    std::vector<std::string> log;
};

TEST(PagedWrite, NeverCrossesAPage) {
    static const std::string wait = "wait 5000";
    static const paging_case cases[] = {
        {bob_ux33xx_i2cWrite, 0x80, 16, 0, 0, {"w 51 80 16", wait}},
        {bob_ux33xx_i2cWrite, 0x85, 11, 0, 0, {"w 51 85 11"}}, // ends at the page: one transfer, no wait
        {bob_ux33xx_i2cWrite, 0x85, 12, 0, 0, {"w 51 85 11", wait, "w 51 90 1"}},
        {bob_ux33xx_i2cWrite, 0x8f, 34, 2, 5, {"w 51 8f 1", wait, "w 51 90 16"}},
        {bob_gn_i2cWrite, 0xf8, 8, 0, 0, {"w 51 f8 8"}},
        {bob_gn_i2cWrite, 0x83, 20, 2, 5, {"w 51 83 5", "w 51 88 8"}},
    };
    const std::vector<uint8_t> data(256);
    for (const paging_case &row : cases) {
        fake_log.clear();
        fake_failing_write = row.failing;
        EXPECT_EQ(row.write(1, 0x51, row.reg, data.data(), row.length), row.result) << row.reg << '+' << row.length;
        EXPECT_EQ(fake_log, row.log) << row.reg << '+' << row.length;
    }
}

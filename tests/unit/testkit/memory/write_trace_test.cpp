#include "testkit/memory/write_trace.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>

namespace {

using ov::test::write_trace;
using testing::ElementsAre;

class WriteTrace : public testing::Test {
  protected:
    ~WriteTrace() override { VirtualFree(page, 0, MEM_RELEASE); }

    void* page = VirtualAlloc(nullptr, 4096, MEM_RESERVE | MEM_COMMIT, PAGE_READWRITE);
    volatile std::uint32_t* words = static_cast<std::uint32_t*>(page);
};

TEST_F(WriteTrace, writes_are_seen_in_order_and_happen) {
    std::vector<std::size_t> offsets;
    {
        write_trace trace(page);
        words[5] = 50;
        words[1] = 10;
        words[1000] = words[5];
        offsets = trace.offsets();
    }
    EXPECT_THAT(offsets, ElementsAre(20, 4, 4000));
    EXPECT_EQ(words[5], 50u);
    EXPECT_EQ(words[1], 10u);
    EXPECT_EQ(words[1000], 50u);
}

TEST_F(WriteTrace, failed_compare_and_swap_counts) {
    words[2] = 7;
    std::size_t count = 0;
    {
        write_trace trace(page);
        InterlockedCompareExchange(reinterpret_cast<volatile LONG*>(&words[2]), 1, 0);
        count = trace.offsets().size();
    }
    EXPECT_EQ(count, 1u);
    EXPECT_EQ(words[2], 7u);
}

TEST_F(WriteTrace, callback_runs_before_the_write) {
    words[3] = 1;
    std::uint32_t seen = 0;
    {
        write_trace trace(page, [&](std::size_t) { seen = words[3]; });
        words[3] = 2;
    }
    EXPECT_EQ(seen, 1u);
    EXPECT_EQ(words[3], 2u);
}

TEST_F(WriteTrace, after_the_trace_page_is_writable) {
    { write_trace trace(page); }
    words[0] = 9;
    EXPECT_EQ(words[0], 9u);
}

}  // namespace

#include "testkit/process/throw_count.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>

namespace {

using ov::test::throws_so_far;

TEST(ThrowCount, nothing_thrown_stays_as_it_is) {
    const auto before = throws_so_far();
    EXPECT_EQ(throws_so_far(), before);
}

TEST(ThrowCount, throw_of_the_program_is_counted) {
    const auto before = throws_so_far();
    EXPECT_THROW(throw std::runtime_error("x"), std::runtime_error);
    EXPECT_EQ(throws_so_far(), before + 1);
}

TEST(ThrowCount, throw_of_the_library_is_counted) {
    const auto before = throws_so_far();
    const std::string text = "abc";
    EXPECT_THROW(static_cast<void>(text.at(5)), std::out_of_range);
    EXPECT_EQ(throws_so_far(), before + 1);
}

}  // namespace

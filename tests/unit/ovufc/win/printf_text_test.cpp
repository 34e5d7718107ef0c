#include "ovufc/win/printf_text.h"

#include <gtest/gtest.h>

namespace ov::win {
namespace {

using namespace std::string_literals;

TEST(PrintText, text_without_percent_signs_stays) {
    EXPECT_EQ(print_text(""), "");
    EXPECT_EQ(print_text("Access is denied.\r\n (where)"), "Access is denied.\r\n (where)");
}

TEST(PrintText, doubled_percent_sign_is_one) {
    EXPECT_EQ(print_text("100%% of %%"), "100% of %");
}

TEST(PrintText, conversions_without_arguments_find_nothing_there) {
    EXPECT_EQ(print_text("%d|%u|%x|%s|%5d|%c|"), "0|0|0|(null)|    0|\0|"s);
    EXPECT_EQ(print_text("%.2f"), "0.00");
    EXPECT_EQ(print_text("%ls"), "(null)");
    EXPECT_EQ(print_text("%I64d"), "0");
    EXPECT_EQ(print_text("%*.*d!"), "!");
}

TEST(PrintText, conversion_that_writes_is_left_out) {
    EXPECT_EQ(print_text("a%nb%hnc%lnd"), "abcd");
}

TEST(PrintText, unfinished_conversion_prints_nothing) {
    EXPECT_EQ(print_text("50%"), "50");
    EXPECT_EQ(print_text("50%-08."), "50");
}

TEST(PrintText, any_number_of_conversions_is_harmless) {
    std::string format;
    std::string expected;
    for (int i = 0; i < 500; ++i) {
        format += "%s%n%d";
        expected += "(null)0";
    }
    EXPECT_EQ(print_text(format), expected);
    EXPECT_EQ(print_text("%" + std::string(1000, '*') + "d"), "");
}

TEST(PrintText, two_bytes_after_a_percent_sign_are_harmless_whatever_they_are) {
    for (int first = 1; first < 256; ++first) {
        for (int second = 1; second < 256; ++second) {
            const char text[] = {'<', '%', static_cast<char>(first), static_cast<char>(second), '>', 0};
            const std::string printed = print_text(text);
            ASSERT_EQ(printed.front(), '<');
        }
    }
}

TEST(PrintText, arguments_are_printed_at_any_length) {
    EXPECT_EQ(print_text("%s-%d", "a", 5), "a-5");
    EXPECT_EQ(print_text("%6000d", 1).size(), 6000U);
}

}  // namespace
}  // namespace ov::win

#include "service/text.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>

namespace {

using ov::service::from_utf8;
using ov::service::to_utf8;

TEST(ToUtf8, empty_text_is_empty) {
    EXPECT_EQ(to_utf8(L""), "");
}

TEST(ToUtf8, characters_of_every_length_become_one_to_four_bytes) {
    EXPECT_EQ(to_utf8(L"a\u00E9\u20AC\U0001F600"), "a\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80");
}

TEST(ToUtf8, text_of_three_byte_characters_fits_whole) {
    std::string expected;
    for (int n = 0; n != 5000; ++n) {
        expected += "\xE2\x82\xAC";
    }
    EXPECT_EQ(to_utf8(std::wstring(5000, L'\u20AC')), expected);
}

TEST(ToUtf8, lone_surrogates_become_replacement_characters) {
    EXPECT_EQ(to_utf8(L"a\xD800z"), "a\xEF\xBF\xBDz");
    EXPECT_EQ(to_utf8(L"a\xDC00"), "a\xEF\xBF\xBD");
    EXPECT_EQ(to_utf8(L"\xD83D"), "\xEF\xBF\xBD");
}

TEST(ToUtf8, text_with_a_nul_ends_there) {
    EXPECT_EQ(to_utf8(std::wstring_view(L"ab\0cd", 5)), "ab");
    EXPECT_EQ(to_utf8(std::wstring_view(L"\0x", 2)), "");
}

TEST(FromUtf8, empty_text_is_empty) {
    EXPECT_EQ(from_utf8(""), L"");
}

TEST(FromUtf8, characters_of_every_length_become_one_or_two_units) {
    EXPECT_EQ(from_utf8("a\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80"), L"a\u00E9\u20AC\U0001F600");
}

TEST(FromUtf8, bytes_that_are_not_utf_8_become_replacement_characters) {
    EXPECT_EQ(from_utf8("a\xFFz"), L"a\uFFFDz");
    EXPECT_EQ(from_utf8("\xC3"), L"\uFFFD");
}

TEST(FromUtf8, text_with_a_nul_ends_there) {
    EXPECT_EQ(from_utf8(std::string_view("ab\0cd", 5)), L"ab");
}

TEST(FromUtf8, room_of_one_unit_more_than_bytes_is_enough_and_nothing_stands_behind) {
    for (const std::string_view text :
         {std::string_view("a\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80"), std::string_view("\xFF\xFF"),
          std::string_view("ab\0cd", 5), std::string_view()}) {
        std::wstring room(text.size() + 1, L'?');
        EXPECT_EQ(from_utf8(text, room.data()), from_utf8(text));
        room.assign(text.size() + 1, L'?');
        (void)from_utf8(text, room.data());
        EXPECT_EQ(room.back(), L'?');
    }
}

TEST(FromUtf8, what_to_utf_8_made_comes_back) {
    const std::wstring path = L"C:\\Users\\J\u00F6rg\\\u6587\u66F8\\\U0001F4C1";
    EXPECT_EQ(from_utf8(to_utf8(path)), path);
}

}  // namespace

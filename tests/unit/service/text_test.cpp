#include "service/text.h"

#include <gtest/gtest.h>

#include <string>

namespace {

using ov::service::from_utf8;
using ov::service::to_utf8;

TEST(ToUtf8, emptyText_isEmpty) {
    EXPECT_EQ(to_utf8(L""), "");
}

TEST(ToUtf8, charactersOfEveryLength_becomeOneToFourBytes) {
    EXPECT_EQ(to_utf8(L"a\u00E9\u20AC\U0001F600"), "a\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80");
}

TEST(ToUtf8, textOfThreeByteCharacters_fitsWhole) {
    std::string expected;
    for (int n = 0; n != 5000; ++n) {
        expected += "\xE2\x82\xAC";
    }
    EXPECT_EQ(to_utf8(std::wstring(5000, L'\u20AC')), expected);
}

TEST(ToUtf8, loneSurrogates_becomeReplacementCharacters) {
    EXPECT_EQ(to_utf8(L"a\xD800z"), "a\xEF\xBF\xBDz");
    EXPECT_EQ(to_utf8(L"a\xDC00"), "a\xEF\xBF\xBD");
    EXPECT_EQ(to_utf8(L"\xD83D"), "\xEF\xBF\xBD");
}

TEST(ToUtf8, textWithANul_endsThere) {
    EXPECT_EQ(to_utf8(std::wstring_view(L"ab\0cd", 5)), "ab");
    EXPECT_EQ(to_utf8(std::wstring_view(L"\0x", 2)), "");
}

TEST(FromUtf8, emptyText_isEmpty) {
    EXPECT_EQ(from_utf8(""), L"");
}

TEST(FromUtf8, charactersOfEveryLength_becomeOneOrTwoUnits) {
    EXPECT_EQ(from_utf8("a\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80"), L"a\u00E9\u20AC\U0001F600");
}

TEST(FromUtf8, bytesThatAreNotUtf8_becomeReplacementCharacters) {
    EXPECT_EQ(from_utf8("a\xFFz"), L"a\uFFFDz");
    EXPECT_EQ(from_utf8("\xC3"), L"\uFFFD");
}

TEST(FromUtf8, textWithANul_endsThere) {
    EXPECT_EQ(from_utf8(std::string_view("ab\0cd", 5)), L"ab");
}

TEST(FromUtf8, whatToUtf8Made_comesBack) {
    const std::wstring path = L"C:\\Users\\J\u00F6rg\\\u6587\u66F8\\\U0001F4C1";
    EXPECT_EQ(from_utf8(to_utf8(path)), path);
}

}  // namespace

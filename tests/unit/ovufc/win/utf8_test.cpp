#include "ovufc/win/utf8.h"

#include <gtest/gtest.h>

#include <array>

namespace ov::win {
namespace {

TEST(Utf8, text_goes_there_and_back) {
    const std::wstring text = L"a\x00E4\x65E5\xD83D\xDE00";
    EXPECT_EQ("a\xC3\xA4\xE6\x97\xA5\xF0\x9F\x98\x80", to_utf8(text));
    EXPECT_EQ(text, from_utf8("a\xC3\xA4\xE6\x97\xA5\xF0\x9F\x98\x80"));
    EXPECT_EQ("", to_utf8(L""));
    EXPECT_EQ(L"", from_utf8(""));
}

TEST(Utf8, nul_is_a_character_like_any_other) {
    EXPECT_EQ(std::string("a\0b", 3), to_utf8(std::wstring_view(L"a\0b", 3)));
    EXPECT_EQ(std::wstring(L"a\0b", 3), from_utf8(std::string_view("a\0b", 3)));
}

TEST(Utf8, ill_formed_text_is_replaced_or_refused) {
    EXPECT_EQ("a\xEF\xBF\xBD", to_utf8(L"a\xD83D"));
    EXPECT_EQ(L"a\xFFFD", from_utf8("a\xFF"));
    EXPECT_EQ(std::nullopt, to_utf8(L"a\xD83D", ill_formed::refused));
    EXPECT_EQ(std::nullopt, from_utf8("a\xFF", ill_formed::refused));
}

TEST(Utf8, conversion_into_a_room_says_how_much_it_took) {
    std::array<wchar_t, 4> room{L'x', L'x', L'x', L'x'};
    EXPECT_EQ(2U, from_utf8("a\xC3\xA4", room.data()));
    EXPECT_EQ((std::array{L'a', L'\x00E4', L'x', L'x'}), room);
    EXPECT_EQ(0U, from_utf8("", room.data()));
    EXPECT_EQ(0U, from_utf8("\xFF", room.data(), ill_formed::refused));
}

}  // namespace
}  // namespace ov::win

#include "testkit/imports/message_texts.h"

#include <gtest/gtest.h>

namespace ov::test {
namespace {

[[gnu::noinline]] std::wstring message_of_the_system_form(DWORD number) {
    wchar_t text[64] = {};
    FormatMessageW(FORMAT_MESSAGE_FROM_HMODULE, nullptr, number, 0, text, 64, nullptr);
    return text;
}

TEST(MessageTexts, number_is_shown_in_place_of_the_text) {
    const message_texts texts(GetModuleHandleW(nullptr));
    EXPECT_EQ(message_of_the_system_form(0), L"<0>");
    EXPECT_EQ(message_of_the_system_form(0x4001A), L"<4001A>");
    EXPECT_EQ(message_of_the_system_form(0x40003), L"<40003 %s>");
    EXPECT_EQ(message_texts::of(0x40003, L"C:\\x"), L"<40003 C:\\x>");
}

}  // namespace
}  // namespace ov::test

#include "shell/command_offset.h"

#include <gtest/gtest.h>
#include <shellapi.h>

namespace ov::shell {
namespace {

CMINVOKECOMMANDINFO narrow(const char* verb) {
    CMINVOKECOMMANDINFO info{};
    info.cbSize = sizeof info;
    info.lpVerb = verb;
    return info;
}

std::optional<WORD> offset_of(const CMINVOKECOMMANDINFOEX& info) {
    return command_offset(reinterpret_cast<const CMINVOKECOMMANDINFO*>(&info));
}

CMINVOKECOMMANDINFOEX wide(const char* verb, const wchar_t* wide_verb) {
    CMINVOKECOMMANDINFOEX info{};
    info.cbSize = sizeof info;
    info.fMask = CMIC_MASK_UNICODE;
    info.lpVerb = verb;
    info.lpVerbW = wide_verb;
    return info;
}

TEST(CommandOffset, no_info_is_none) {
    EXPECT_EQ(command_offset(nullptr), std::nullopt);
}

TEST(CommandOffset, offsets_come_back) {
    for (const WORD offset : {0, 1, 3, 4, 0xFFFF}) {
        const auto info = narrow(MAKEINTRESOURCEA(offset));
        EXPECT_EQ(command_offset(&info), offset);
    }
}

TEST(CommandOffset, named_verb_is_none) {
    const auto info = narrow("open");
    EXPECT_EQ(command_offset(&info), std::nullopt);
}

TEST(CommandOffset, pointer_whose_middle_word_is_zero_is_still_a_name) {
    // 0x0000000100000002: the bits 16 to 31 are zero, yet this is an address.
    const auto info = narrow(reinterpret_cast<const char*>(0x1'0000'0002ULL));
    EXPECT_EQ(command_offset(&info), std::nullopt);
}

TEST(CommandOffset, wide_form_of_the_same_offset) {
    EXPECT_EQ(offset_of(wide(MAKEINTRESOURCEA(2), MAKEINTRESOURCEW(2))), 2);
}

TEST(CommandOffset, wide_verb_is_not_looked_at) {
    EXPECT_EQ(offset_of(wide(MAKEINTRESOURCEA(1), L"open")), 1);
    EXPECT_EQ(offset_of(wide(MAKEINTRESOURCEA(1), MAKEINTRESOURCEW(3))), 1);
    EXPECT_EQ(offset_of(wide(nullptr, L"open")), 0);
    EXPECT_EQ(offset_of(wide("open", MAKEINTRESOURCEW(1))), std::nullopt);
}

}  // namespace
}  // namespace ov::shell

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

TEST(CommandOffset, noInfo_isNone) {
    EXPECT_EQ(command_offset(nullptr), std::nullopt);
}

TEST(CommandOffset, offsets_comeBack) {
    for (const WORD offset : {0, 1, 3, 4, 0xFFFF}) {
        const auto info = narrow(MAKEINTRESOURCEA(offset));
        EXPECT_EQ(command_offset(&info), offset);
    }
}

TEST(CommandOffset, namedVerb_isNone) {
    const auto info = narrow("open");
    EXPECT_EQ(command_offset(&info), std::nullopt);
}

TEST(CommandOffset, pointerWhoseMiddleWordIsZero_isStillAName) {
    // 0x0000000100000002: the bits 16 to 31 are zero, yet this is an address.
    const auto info = narrow(reinterpret_cast<const char*>(0x1'0000'0002ULL));
    EXPECT_EQ(command_offset(&info), std::nullopt);
}

TEST(CommandOffset, wideForm_ofTheSameOffset) {
    EXPECT_EQ(offset_of(wide(MAKEINTRESOURCEA(2), MAKEINTRESOURCEW(2))), 2);
}

TEST(CommandOffset, wideVerb_isNotLookedAt) {
    EXPECT_EQ(offset_of(wide(MAKEINTRESOURCEA(1), L"open")), 1);
    EXPECT_EQ(offset_of(wide(MAKEINTRESOURCEA(1), MAKEINTRESOURCEW(3))), 1);
    EXPECT_EQ(offset_of(wide(nullptr, L"open")), 0);
    EXPECT_EQ(offset_of(wide("open", MAKEINTRESOURCEW(1))), std::nullopt);
}

}  // namespace
}  // namespace ov::shell

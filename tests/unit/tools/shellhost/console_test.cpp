#include "tools/shellhost/console.h"

#include <gtest/gtest.h>

namespace ov::shellhost {
namespace {

TEST(Console, Hexadecimal_HasEightDigits) {
    EXPECT_EQ(hexadecimal(0), L"0x00000000");
    EXPECT_EQ(hexadecimal(0xF0800008), L"0xF0800008");
}

TEST(Console, Describe_NamesTheCodeAndWhatTheSystemSays) {
    EXPECT_EQ(describe(S_OK), L"0x00000000");
    EXPECT_EQ(describe(5), L"0x00000005");
    EXPECT_EQ(describe(E_ACCESSDENIED).rfind(L"0x80070005 (", 0), 0U);
    EXPECT_EQ(describe(static_cast<HRESULT>(0x8FFF1234)), L"0x8FFF1234");
}

}  // namespace
}  // namespace ov::shellhost

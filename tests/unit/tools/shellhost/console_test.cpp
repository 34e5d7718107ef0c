#include "tools/shellhost/console.h"

#include <gtest/gtest.h>

namespace ov::shellhost {
namespace {

TEST(Console, hexadecimal_has_eight_digits) {
    EXPECT_EQ(hexadecimal(0), L"0x00000000");
    EXPECT_EQ(hexadecimal(0xF0800008), L"0xF0800008");
}

TEST(Console, describe_names_the_code_and_what_the_system_says) {
    EXPECT_EQ(describe(S_OK), L"0x00000000");
    EXPECT_EQ(describe(5), L"0x00000005");
    EXPECT_EQ(describe(E_ACCESSDENIED).rfind(L"0x80070005 (", 0), 0U);
    EXPECT_EQ(describe(static_cast<HRESULT>(0x8FFF1234)), L"0x8FFF1234");
}

}  // namespace
}  // namespace ov::shellhost

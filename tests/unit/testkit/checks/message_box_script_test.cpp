#include "testkit/checks/message_box_script.h"

#include <gtest/gtest-spi.h>
#include <gtest/gtest.h>

namespace ov::test {
namespace {

HMODULE this_program() {
    return GetModuleHandleW(nullptr);
}

TEST(MessageBoxScript, boxes_are_answered_in_order_and_remembered) {
    message_box_script script(this_program(), {IDOK, IDCANCEL});
    EXPECT_EQ(MessageBoxW(nullptr, L"first", L"title", MB_OKCANCEL), IDOK);
    EXPECT_EQ(MessageBoxW(nullptr, L"second", nullptr, MB_ICONHAND), IDCANCEL);
    ASSERT_EQ(script.shown().size(), 2U);
    EXPECT_EQ(script.shown()[0].text, L"first");
    EXPECT_EQ(script.shown()[0].caption, L"title");
    EXPECT_EQ(script.shown()[0].style, static_cast<UINT>(MB_OKCANCEL));
    EXPECT_EQ(script.shown()[1].caption, L"(null)");
}

TEST(MessageBoxScript, box_beyond_the_script_fails_the_test) {
    static message_box_script* script = nullptr;
    message_box_script empty(this_program(), {});
    script = &empty;
    EXPECT_NONFATAL_FAILURE(MessageBoxW(nullptr, L"unexpected", L"", MB_OK), "a box that nobody expects");
    EXPECT_EQ(script->shown().size(), 1U);
}

}  // namespace
}  // namespace ov::test

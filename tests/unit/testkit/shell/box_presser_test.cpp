#include "testkit/shell/box_presser.h"

#include <gtest/gtest.h>

namespace ov::test {
namespace {

TEST(BoxPresser, real_boxes_are_pressed_and_read) {
    box_presser presser({IDOK, IDCANCEL});
    EXPECT_EQ(MessageBoxW(nullptr, L"go on?", L"a title", MB_OKCANCEL | MB_DEFBUTTON2), IDOK);
    EXPECT_EQ(MessageBoxW(nullptr, L"sure?", L"a title", MB_OKCANCEL), IDCANCEL);
    const auto& pressed = presser.finish();
    ASSERT_EQ(pressed.size(), 2U);
    EXPECT_EQ(pressed[0].text, L"go on?");
    EXPECT_EQ(pressed[0].caption, L"a title");
    EXPECT_EQ(pressed[0].default_button, IDCANCEL);
    EXPECT_EQ(pressed[1].text, L"sure?");
    EXPECT_EQ(pressed[1].default_button, IDOK);
}

}  // namespace
}  // namespace ov::test

#include "shell/message_boxes.h"

#include <gtest/gtest.h>

#include "testkit/checks/message_box_script.h"
#include "testkit/shell/box_presser.h"
#include "tests/unit/shell/texts_fixture.h"

namespace ov::shell {
namespace {

using test::message_box_script;
using test::message_texts;

class MessageBoxes : public test::texts_fixture {};

TEST_F(MessageBoxes, each_kind_has_its_style) {
    message_box_script script(GetModuleHandleW(nullptr), {IDOK, IDOK, IDOK, IDOK});
    EXPECT_TRUE(confirmed(L"question"));
    show_box(L"refusal", box_style::refusal);
    show_failure();
    show_box(L"result", box_style::result);
    const auto& shown = script.shown();
    ASSERT_EQ(shown.size(), 4U);
    EXPECT_EQ(shown[0].style, 0x50121U);
    EXPECT_EQ(shown[1].style, 0x50030U);
    EXPECT_EQ(shown[2].style, 0x50010U);
    EXPECT_EQ(shown[3].style, 0x50040U);
    EXPECT_EQ(shown[0].text, L"question");
    EXPECT_EQ(shown[2].text, message_texts::of(0x40014));
    for (const auto& box : shown) {
        EXPECT_EQ(box.owner, nullptr);
        EXPECT_EQ(box.caption, message_texts::of(0));
    }
}

TEST_F(MessageBoxes, nothing_but_ok_confirms) {
    message_box_script script(GetModuleHandleW(nullptr), {IDCANCEL, 0, IDYES, IDCLOSE});
    for (int asked = 0; asked < 4; ++asked) {
        EXPECT_FALSE(confirmed(L"question"));
    }
}

TEST_F(MessageBoxes, real_question_starts_on_cancel) {
    test::box_presser presser({IDCANCEL});
    EXPECT_FALSE(confirmed(L"go on?"));
    const auto& pressed = presser.finish();
    ASSERT_EQ(pressed.size(), 1U);
    EXPECT_EQ(pressed[0].text, L"go on?");
    EXPECT_EQ(pressed[0].caption, message_texts::of(0));
    EXPECT_EQ(pressed[0].default_button, IDCANCEL);
}

}  // namespace
}  // namespace ov::shell

#include "tests/ui/explorer_fixture.h"

namespace ov::test {
namespace {

using testing::Contains;
using testing::Not;

class ExplorerCommands : public explorer_fixture {};

TEST_F(ExplorerCommands, double_click_on_one_click_restore_asks_twice_and_then_restores) {
    window_->tell({"double-click One Click Restore"});
    const auto first = dialog();
    ASSERT_FALSE(first.empty());
    EXPECT_EQ(line_with(first, "dialog"), "dialog Orvane Vaultkeep");
    EXPECT_NE(line_with(first, "2024"), "") << "the restore point's date";
    take_screenshot(L"ui-restore-first");
    window_->tell({"answer ok"});
    const auto second = dialog_after(first);
    EXPECT_EQ(line_with(second, "dialog"), "dialog Orvane Vaultkeep");
    EXPECT_NE(line_with(second, "2024"), "") << "the restore point's date";
    EXPECT_NE(second, first) << "the second question is another one";
    take_screenshot(L"ui-restore-second");
    EXPECT_THAT(service_.calls(), Not(Contains(call_restore)));
    window_->tell({"answer ok", "wait"});
    EXPECT_THAT(service_.calls(), Contains(call_restore));
}

TEST_F(ExplorerCommands, cancel_at_the_first_question_sends_nothing_more) {
    window_->tell({"double-click One Click Restore"});
    (void)dialog();
    service_.forget_calls();
    window_->tell({"answer cancel", "wait"});
    EXPECT_TRUE(window_->ask("dialogs").empty());
    EXPECT_TRUE(service_.calls().empty());
}

TEST_F(ExplorerCommands, double_click_on_addons_asks) {
    window_->tell({"double-click Addons"});
    EXPECT_EQ(line_with(dialog(), "dialog"), "dialog Orvane Vaultkeep");
    take_screenshot(L"ui-addons");
    window_->tell({"answer cancel", "wait"});
    EXPECT_TRUE(window_->ask("dialogs").empty());
}

TEST_F(ExplorerCommands, right_click_on_a_command_offers_nothing) {
    window_->tell({"right-click Addons", "wait-empty-menu"});
    EXPECT_TRUE(window_->ask("menus").empty());
    // What would open a menu does: the click was not lost.
    EXPECT_NE(line_with(menu_of("Projects"), "Orvane"), "");
    window_->tell({"key escape"});
}

}  // namespace
}  // namespace ov::test

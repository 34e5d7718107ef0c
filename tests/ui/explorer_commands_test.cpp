#include "tests/ui/explorer_fixture.h"

namespace ov::test {
namespace {

using testing::Contains;
using testing::HasSubstr;
using testing::Not;

class ExplorerCommands : public explorer_fixture {};

TEST_F(ExplorerCommands, DoubleClickOnOneClickRestore_AsksTwiceAndThenRestores) {
    window_->tell({"double-click One Click Restore"});
    const auto first = dialog();
    ASSERT_FALSE(first.empty());
    EXPECT_EQ(line_with(first, "dialog"), "dialog Orvane Vaultkeep");
    EXPECT_NE(line_with(first, "2024"), "") << "the restore point's date";
    take_screenshot(L"ui-restore-first");
    window_->tell({"answer ok"});
    Sleep(500);
    EXPECT_NE(dialog(), first) << "the second question is another one";
    take_screenshot(L"ui-restore-second");
    EXPECT_THAT(service_.calls(), Not(Contains(call_restore)));
    window_->tell({"answer ok", "wait"});
    EXPECT_THAT(service_.calls(), Contains(call_restore));
}

TEST_F(ExplorerCommands, CancelAtTheFirstQuestion_SendsNothingMore) {
    window_->tell({"double-click One Click Restore"});
    (void)dialog();
    service_.forget_calls();
    window_->tell({"answer cancel", "wait"});
    EXPECT_TRUE(window_->ask("dialogs").empty());
    EXPECT_TRUE(service_.calls().empty());
}

TEST_F(ExplorerCommands, DoubleClickOnAddons_Asks) {
    window_->tell({"double-click Addons"});
    EXPECT_EQ(line_with(dialog(), "dialog"), "dialog Orvane Vaultkeep");
    take_screenshot(L"ui-addons");
    window_->tell({"answer cancel", "wait"});
    EXPECT_TRUE(window_->ask("dialogs").empty());
}

TEST_F(ExplorerCommands, RightClickOnACommand_OffersNothing) {
    window_->tell({"right-click Addons"});
    Sleep(700);
    EXPECT_TRUE(window_->ask("menus").empty());
}

}  // namespace
}  // namespace ov::test

#include "tests/ui/explorer_fixture.h"

namespace ov::test {
namespace {

using testing::Contains;
using testing::HasSubstr;
using testing::Not;

class ExplorerMenus : public explorer_fixture {};

TEST_F(ExplorerMenus, right_click_on_a_location_shows_the_submenu) {
    const auto menu = menu_of("Projects");
    EXPECT_THAT(line_with(menu, "Open"), HasSubstr("default"));
    EXPECT_THAT(line_with(menu, "Orvane"), HasSubstr("submenu, bitmap"));
    EXPECT_THAT(line_with(menu, "Export deleted files"), HasSubstr("enabled"));
    EXPECT_THAT(line_with(menu, "Export chronels"), HasSubstr("enabled"));
    EXPECT_THAT(service_.calls(), Contains(call_folder_status));
    window_->tell({"key down", "key down", "key right"});
    Sleep(300);
    take_screenshot(L"ui-menu-location");
    window_->tell({"key escape", "key escape"});
}

TEST_F(ExplorerMenus, right_click_inside_a_location_shows_the_submenu_beside_the_systems_commands) {
    window_->tell({"double-click Projects", "wait"});
    const auto menu = menu_of("drawings");
    EXPECT_THAT(line_with(menu, "Orvane"), HasSubstr("submenu, bitmap"));
    EXPECT_NE(line_with(menu, "Properties"), "");
    take_screenshot(L"ui-menu-inside");
    window_->tell({"key escape"});
}

TEST_F(ExplorerMenus, right_click_on_an_untracked_file_shows_the_systems_commands_only) {
    window_->tell({"double-click Projects", "wait"});
    const auto menu = menu_of("plan.txt");
    EXPECT_NE(line_with(menu, "Properties"), "");
    EXPECT_THAT(menu, Not(Contains(HasSubstr("Orvane"))));
    window_->tell({"key escape"});
}

TEST_F(ExplorerMenus, click_on_protection_settings_opens_the_dialog) {
    (void)menu_of("Projects");
    window_->tell({"click-menu Orvane"});
    Sleep(500);
    window_->tell({"click-menu Protection settings..."});
    EXPECT_THAT(line_with(dialog(), "dialog"), HasSubstr("Orvane"));
    service_.forget_calls();
    window_->tell({"answer cancel", "wait"});
    EXPECT_TRUE(window_->ask("dialogs").empty());
    EXPECT_TRUE(service_.calls().empty());
}

TEST_F(ExplorerMenus, open_goes_there_in_the_same_window) {
    (void)menu_of("Projects");
    window_->tell({"key o", "wait"});
    EXPECT_THAT(window_->ask_line("title"), HasSubstr("Projects"));
}

}  // namespace
}  // namespace ov::test

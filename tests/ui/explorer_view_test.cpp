#include "tests/ui/explorer_fixture.h"

namespace ov::test {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::StartsWith;

class ExplorerView : public explorer_fixture {};

TEST_F(ExplorerView, navigation_pane_shows_the_folder) {
    EXPECT_THAT(window_->ask("tree"), Contains(testing::MatchesRegex(" *Orvane.*")));
}

TEST_F(ExplorerView, view_shows_the_documents_items_in_order) {
    window_->tell({"mode details", "wait"});
    EXPECT_THAT(window_->ask("view"),
                ElementsAre(StartsWith("Projects | "), StartsWith("Managed | "), StartsWith("Cloud | "),
                            StartsWith("One Click Restore | "), StartsWith("Addons | ")));
    EXPECT_EQ(window_->ask_line("columns"), "Name | Type");
    take_screenshot(L"ui-details");
}

TEST_F(ExplorerView, icon_mode_shows_the_same_items) {
    window_->tell({"mode icons", "wait"});
    EXPECT_EQ(window_->ask("view").size(), 5U);
    take_screenshot(L"ui-icons");
}

TEST_F(ExplorerView, double_click_on_a_location_shows_the_real_folder) {
    window_->tell({"double-click Projects", "wait"});
    EXPECT_THAT(window_->ask_line("title"), StartsWith("Projects"));
    EXPECT_THAT(window_->ask("view"), ElementsAre(StartsWith("drawings"), StartsWith("plan.txt")));
    take_screenshot(L"ui-location");
}

TEST_F(ExplorerView, node_below_the_folder_leads_to_the_location) {
    window_->tell({"expand Orvane", "wait"});
    const auto tree = window_->ask("tree");
    EXPECT_THAT(tree, Contains("    Projects"));
    EXPECT_THAT(tree, Contains("    Managed"));
    window_->tell({"click-tree Projects", "wait"});
    EXPECT_THAT(window_->ask_line("title"), StartsWith("Projects"));
    take_screenshot(L"ui-tree");
}

TEST_F(ExplorerView, click_on_the_folders_node_leads_back_to_it) {
    window_->tell({"browse C:\\windows", "wait"});
    EXPECT_THAT(window_->ask_line("title"), StartsWith("windows"));
    window_->tell({"click-tree Orvane", "wait"});
    EXPECT_THAT(window_->ask_line("title"), StartsWith("Orvane"));
    EXPECT_EQ(window_->ask("view").size(), 5U);
}

}  // namespace
}  // namespace ov::test

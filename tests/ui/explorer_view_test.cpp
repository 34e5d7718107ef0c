#include "tests/ui/explorer_fixture.h"

namespace ov::test {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::StartsWith;

class ExplorerView : public explorer_fixture {};

TEST_F(ExplorerView, NavigationPane_ShowsTheFolder) {
    EXPECT_THAT(window_->ask("tree"), Contains(testing::MatchesRegex(" *Orvane.*")));
}

TEST_F(ExplorerView, View_ShowsTheDocumentsItemsInOrder) {
    window_->tell({"mode details", "wait"});
    EXPECT_THAT(window_->ask("view"),
                ElementsAre(StartsWith("Projects | "), StartsWith("Managed | "), StartsWith("Cloud | "),
                            StartsWith("One Click Restore | "), StartsWith("Addons | ")));
    EXPECT_EQ(window_->ask_line("columns"), "Name | Type");
    take_screenshot(L"ui-details");
}

TEST_F(ExplorerView, IconMode_ShowsTheSameItems) {
    window_->tell({"mode icons", "wait"});
    EXPECT_EQ(window_->ask("view").size(), 5U);
    take_screenshot(L"ui-icons");
}

TEST_F(ExplorerView, DoubleClickOnALocation_ShowsTheRealFolder) {
    window_->tell({"double-click Projects", "wait"});
    EXPECT_THAT(window_->ask_line("title"), StartsWith("Projects"));
    EXPECT_THAT(window_->ask("view"), ElementsAre(StartsWith("drawings"), StartsWith("plan.txt")));
    take_screenshot(L"ui-location");
}

TEST_F(ExplorerView, NodeBelowTheFolder_LeadsToTheLocation) {
    window_->tell({"expand Orvane", "wait"});
    const auto tree = window_->ask("tree");
    EXPECT_THAT(tree, Contains("    Projects"));
    EXPECT_THAT(tree, Contains("    Managed"));
    window_->tell({"click-tree Projects", "wait"});
    EXPECT_THAT(window_->ask_line("title"), StartsWith("Projects"));
    take_screenshot(L"ui-tree");
}

TEST_F(ExplorerView, ClickOnTheFoldersNode_LeadsBackToIt) {
    window_->tell({"browse C:\\windows", "wait"});
    EXPECT_THAT(window_->ask_line("title"), StartsWith("windows"));
    window_->tell({"click-tree Orvane", "wait"});
    EXPECT_THAT(window_->ask_line("title"), StartsWith("Orvane"));
    EXPECT_EQ(window_->ask("view").size(), 5U);
}

}  // namespace
}  // namespace ov::test

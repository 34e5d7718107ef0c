#include "tools/shellhost/menus/menu_sources.h"

#include <gtest/gtest.h>

#include "testkit/files/temp_folder.h"
#include "tools/shellhost/apartment.h"
#include "tools/shellhost/menus/menu_query.h"

namespace ov::shellhost {
namespace {

class MenuSources : public testing::Test {
  protected:
    apartment com_;
    test::temp_folder folder_;
    file_selection selection_ = select_files({folder_.make_file(L"letter.txt", "text")});
};

TEST_F(MenuSources, system_menu_has_the_systems_commands) {
    const auto sources = system_menu(selection_);
    ASSERT_EQ(sources.size(), 1U);
    Microsoft::WRL::ComPtr<IContextMenu> menu;
    ASSERT_EQ(sources.front().open(menu.GetAddressOf()), S_OK);
    const queried_menu queried(menu, CMF_NORMAL);
    EXPECT_NE(find_command(queried.items(), L"Properties"), nullptr);
}

TEST_F(MenuSources, unregistered_handler_is_named_as_such) {
    EXPECT_EQ(unregistered_handler(selection_).name, L"Orvane Vaultkeep (not registered)");
}

}  // namespace
}  // namespace ov::shellhost

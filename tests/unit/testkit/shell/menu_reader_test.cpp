#include "testkit/shell/menu_reader.h"

#include <gtest/gtest.h>

namespace ov::test {
namespace {

TEST(MenuReader, items_are_read_as_they_were_inserted) {
    HMENU menu = CreatePopupMenu();
    HMENU inner = CreatePopupMenu();
    AppendMenuW(menu, MF_STRING | MF_GRAYED, 7, L"grey");
    AppendMenuW(menu, MF_STRING | MF_POPUP, reinterpret_cast<UINT_PTR>(inner), L"more");
    const auto items = read_menu(menu);
    ASSERT_EQ(items.size(), 2U);
    EXPECT_EQ(items[0], (menu_item{L"grey", 7, MF_GRAYED}));
    EXPECT_EQ(items[1].text, L"more");
    EXPECT_EQ(items[1].submenu, inner);
    DestroyMenu(menu);
}

TEST(MenuReader, no_menu_has_no_items) {
    EXPECT_TRUE(read_menu(nullptr).empty());
}

}  // namespace
}  // namespace ov::test

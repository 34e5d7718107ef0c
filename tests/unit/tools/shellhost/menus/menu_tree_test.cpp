#include "tools/shellhost/menus/menu_tree.h"

#include <gtest/gtest.h>

#include "tools/shellhost/menus/menu_query.h"

namespace ov::shellhost {
namespace {

constexpr UINT first_id = 10;

TEST(MenuText, accelerators_are_left_out) {
    EXPECT_EQ(without_accelerators(L"&Open"), L"Open");
    EXPECT_EQ(without_accelerators(L"Save && close\tCtrl+S"), L"Save & close");
    EXPECT_EQ(without_accelerators(L"Trailing &"), L"Trailing &");
}

class MenuTree : public testing::Test {
  protected:
    MenuTree() : menu(CreatePopupMenu()) {
        const HMENU submenu = CreatePopupMenu();
        AppendMenuW(submenu, MF_STRING | MF_GRAYED, first_id + 1, L"&Greyed");
        AppendMenuW(menu.get(), MF_STRING, first_id, L"&First");
        AppendMenuW(menu.get(), MF_SEPARATOR, 0, nullptr);
        AppendMenuW(menu.get(), MF_POPUP, reinterpret_cast<UINT_PTR>(submenu), L"More");
        SetMenuDefaultItem(menu.get(), 0, TRUE);
        items = read_menu(menu.get(), first_id, nullptr);
    }
    win::unique_menu menu;
    std::vector<menu_item> items;
};

TEST_F(MenuTree, items_are_read_depth_first) {
    ASSERT_EQ(items.size(), 4U);
    EXPECT_EQ(items[0].text, L"First");
    EXPECT_EQ(items[0].offset, 0U);
    EXPECT_TRUE(items[0].is_default);
    EXPECT_TRUE(items[1].is_separator);
    EXPECT_TRUE(items[2].is_submenu);
    EXPECT_EQ(items[2].offset, std::nullopt);
    EXPECT_EQ(items[3].depth, 1U);
    EXPECT_EQ(items[3].offset, 1U);
    EXPECT_FALSE(items[3].is_enabled);
}

TEST_F(MenuTree, lines_say_number_text_and_state) {
    EXPECT_EQ(line_of(items[0]), L"  [0] First                             enabled, default");
    EXPECT_EQ(line_of(items[1]), L"  ----");
    EXPECT_EQ(line_of(items[3]), L"      [1] Greyed                        greyed");
}

TEST_F(MenuTree, command_is_found_by_number_or_text) {
    EXPECT_EQ(find_command(items, L"1"), &items[3]);
    EXPECT_EQ(find_command(items, L"greyed"), &items[3]);
    EXPECT_EQ(find_command(items, L"&FIRST"), &items[0]);
    EXPECT_EQ(find_command(items, L"More"), nullptr);
    EXPECT_EQ(find_command(items, L"7"), nullptr);
    EXPECT_EQ(find_command(items, L""), nullptr);
}

TEST(MenuTreeBitmaps, either_kind_of_bitmap_counts) {
    const win::unique_menu menu(CreatePopupMenu());
    const HBITMAP bitmap = CreateBitmap(8, 8, 1, 1, nullptr);
    AppendMenuW(menu.get(), MF_STRING, first_id, L"with");
    AppendMenuW(menu.get(), MF_STRING, first_id + 1, L"without");
    SetMenuItemBitmaps(menu.get(), 0, MF_BYPOSITION, bitmap, bitmap);
    const auto items = read_menu(menu.get(), first_id, nullptr);
    EXPECT_TRUE(items[0].has_bitmap);
    EXPECT_FALSE(items[1].has_bitmap);
    DeleteObject(bitmap);
}

}  // namespace
}  // namespace ov::shellhost

#include "shell/file_menu/folder_submenu.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "testkit/imports/import_patch.h"
#include "testkit/shell/menu_reader.h"

namespace ov::shell {
namespace {

using test::menu_item;
using testing::ElementsAre;

const std::vector<std::wstring> texts{L"protect", L"unprotect", L"deleted", L"chronels"};

std::vector<menu_item> items_of(const folder_submenu_content& content) {
    const folder_submenu made = make_folder_submenu(content, 100);
    EXPECT_TRUE(made.menu);
    const auto items = test::read_menu(made.menu.get());
    EXPECT_EQ(made.item_count, items.size());
    return items;
}

TEST(FolderSubmenu, unprotected_folder_says_so_whatever_else_holds) {
    for (const bool active : {false, true}) {
        for (const bool exports : {false, true}) {
            EXPECT_THAT(items_of({texts, false, active, true, exports}),
                        ElementsAre(menu_item{L"Not protected", 100, MF_GRAYED}));
        }
    }
}

TEST(FolderSubmenu, protected_folder_without_exports_has_two_items) {
    EXPECT_THAT(items_of({texts, true, true, true, false}),
                ElementsAre(menu_item{L"protect", 100, 0}, menu_item{L"unprotect", 101, 0}));
}

TEST(FolderSubmenu, protected_folder_with_exports_has_four_items) {
    EXPECT_THAT(items_of({texts, true, true, true, true}),
                ElementsAre(menu_item{L"protect", 100, 0}, menu_item{L"unprotect", 101, 0},
                            menu_item{L"deleted", 102, 0}, menu_item{L"chronels", 103, 0}));
}

TEST(FolderSubmenu, inactive_driver_greys_the_first_item_alone) {
    EXPECT_THAT(items_of({texts, true, false, true, true}),
                ElementsAre(menu_item{L"protect", 100, MF_GRAYED}, menu_item{L"unprotect", 101, 0},
                            menu_item{L"deleted", 102, 0}, menu_item{L"chronels", 103, 0}));
}

TEST(FolderSubmenu, without_unprotect_the_exports_move_up) {
    EXPECT_THAT(items_of({texts, true, true, false, true}),
                ElementsAre(menu_item{L"protect", 100, 0}, menu_item{L"deleted", 101, 0},
                            menu_item{L"chronels", 102, 0}));
}

TEST(FolderSubmenu, no_menu_to_be_had_is_null_with_the_reason) {
    const test::import_patch<decltype(CreateMenu)> patch(GetModuleHandleW(nullptr), "user32.dll",
                                                         "CreateMenu", []() -> HMENU {
                                                             SetLastError(ERROR_NOT_ENOUGH_MEMORY);
                                                             return nullptr;
                                                         });
    const folder_submenu made = make_folder_submenu({texts, true, true, true, true}, 100);
    EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_NOT_ENOUGH_MEMORY));
    EXPECT_FALSE(made.menu);
}

}  // namespace
}  // namespace ov::shell

#include <gmock/gmock.h>

#include "module/state/class_ids.h"
#include "ovufc/ipc/drvport/wire.h"
#include "testkit/imports/absent_driver.h"
#include "testkit/imports/import_patch.h"
#include "tests/module/menus/menus_fixture.h"

namespace ov::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr UINT first = queried_menu::first_id;

class FolderMenu : public menus_fixture {};

TEST_F(FolderMenu, folder_is_asked_about_once) {
    const auto menu = menu_on(folder_.path());
    EXPECT_THAT(sent(), ElementsAre(request_text(service_call::get_folder_status,
                                                 R"({"folderName":)" + json_text(folder_.path()) + "}")));
}

TEST_F(FolderMenu, unprotected_folder_has_one_grey_item) {
    reply_folder_status(false);
    const auto menu = menu_on(folder_.path());
    const queried_menu queried(menu.Get(), CMF_NORMAL);
    EXPECT_EQ(queried.result, 2);
    ASSERT_EQ(queried.added.size(), 1U);
    EXPECT_EQ(queried.added[0].text, L"Orvane");
    EXPECT_EQ(queried.added[0].state, 0U);
    EXPECT_THAT(queried.submenu, ElementsAre(menu_item{L"Not protected", first, MF_GRAYED}));
}

TEST_F(FolderMenu, protected_folder_has_two_items) {
    reply_folder_status(true);
    const auto menu = menu_on(folder_.path());
    const queried_menu queried(menu.Get(), CMF_NORMAL);
    EXPECT_EQ(queried.result, 3);
    EXPECT_THAT(queried.submenu, ElementsAre(menu_item{message_texts::of(0x40000), first},
                                             menu_item{message_texts::of(0x40001), first + 1}));
}

TEST_F(FolderMenu, protected_folder_with_exports_has_four_items) {
    reply_folder_status(true);
    service_.set_flags(ORV_FLAG_EXPORTS_AVAILABLE);
    const auto menu = menu_on(folder_.path());
    const queried_menu queried(menu.Get(), CMF_NORMAL);
    EXPECT_EQ(queried.result, 5);
    EXPECT_THAT(queried.submenu, ElementsAre(menu_item{message_texts::of(0x40000), first},
                                             menu_item{message_texts::of(0x40001), first + 1},
                                             menu_item{L"Export deleted files", first + 2},
                                             menu_item{L"Export chronels", first + 3}));
}

TEST_F(FolderMenu, unprotected_folder_with_exports_still_has_one_item) {
    reply_folder_status(false);
    service_.set_flags(ORV_FLAG_EXPORTS_AVAILABLE);
    const auto menu = menu_on(folder_.path());
    const queried_menu queried(menu.Get(), CMF_NORMAL);
    EXPECT_EQ(queried.result, 2);
    EXPECT_EQ(queried.submenu.size(), 1U);
}

TEST_F(FolderMenu, submenu_carries_the_products_bitmap_and_its_items_none) {
    reply_folder_status(true);
    const auto menu = menu_on(folder_.path());
    const queried_menu queried(menu.Get(), CMF_NORMAL);
    ASSERT_EQ(queried.added.size(), 1U);
    EXPECT_NE(queried.added[0].unchecked_bitmap, nullptr);
    EXPECT_EQ(queried.added[0].checked_bitmap, queried.added[0].unchecked_bitmap);
    BITMAP bitmap{};
    GetObjectW(queried.added[0].unchecked_bitmap, sizeof bitmap, &bitmap);
    EXPECT_EQ(bitmap.bmBitsPixel, 32);
    for (const auto& item : queried.submenu) {
        EXPECT_EQ(item.checked_bitmap, nullptr);
        EXPECT_EQ(item.unchecked_bitmap, nullptr);
    }
}

TEST_F(FolderMenu, driver_that_stops_serving_greys_the_first_item_alone) {
    reply_folder_status(true);
    service_.set_flags(ORV_FLAG_EXPORTS_AVAILABLE);
    const auto menu = menu_on(folder_.path());
    service_.set_state(0);
    const queried_menu queried(menu.Get(), CMF_NORMAL);
    EXPECT_EQ(queried.result, 5);
    EXPECT_THAT(queried.submenu, ElementsAre(menu_item{message_texts::of(0x40000), first, MF_GRAYED},
                                             menu_item{message_texts::of(0x40001), first + 1},
                                             menu_item{L"Export deleted files", first + 2},
                                             menu_item{L"Export chronels", first + 3}));
}

TEST_F(FolderMenu, driver_that_serves_nothing_leaves_the_grey_item) {
    service_.set_state(0);
    service_.set_flags(ORV_FLAG_EXPORTS_AVAILABLE);
    const auto menu = menu_on(folder_.path());
    const queried_menu queried(menu.Get(), CMF_NORMAL);
    EXPECT_EQ(queried.result, 2);
    EXPECT_THAT(queried.submenu, ElementsAre(menu_item{L"Not protected", first, MF_GRAYED}));
    EXPECT_THAT(sent(), IsEmpty());
}

TEST_F(FolderMenu, absent_driver_leaves_the_grey_item) {
    const absent_driver no_driver(module_.handle());
    const auto menu = menu_on(folder_.path());
    const queried_menu queried(menu.Get(), CMF_NORMAL);
    EXPECT_EQ(queried.result, 2);
    EXPECT_THAT(queried.submenu, ElementsAre(menu_item{L"Not protected", first, MF_GRAYED}));
    EXPECT_EQ(no_driver.opens(), 3)
        << "one to ask about the folder, one for its flags, one to build the menu";
}

TEST_F(FolderMenu, hosts_that_want_other_menus_get_nothing) {
    reply_folder_status(true);
    const auto menu = menu_on(folder_.path());
    for (const UINT flags : std::initializer_list<UINT>{CMF_DEFAULTONLY, CMF_EXTENDEDVERBS, 0x800,
                                                        CMF_EXTENDEDVERBS | CMF_EXPLORE}) {
        const queried_menu queried(menu.Get(), flags);
        EXPECT_EQ(queried.result, 0) << std::hex << flags;
        EXPECT_THAT(queried.added, IsEmpty());
    }
    for (const UINT flags :
         std::initializer_list<UINT>{CMF_VERBSONLY, CMF_EXPLORE, CMF_CANRENAME, CMF_NODEFAULT, 0x400}) {
        EXPECT_EQ(queried_menu(menu.Get(), flags).result, 3) << std::hex << flags;
    }
}

TEST_F(FolderMenu, restricted_user_gets_nothing) {
    reply_folder_status(true, "restricted");
    const auto menu = menu_on(folder_.path());
    EXPECT_EQ(queried_menu(menu.Get(), CMF_NORMAL).result, 0);
}

TEST_F(FolderMenu, restricted_in_another_case_is_not_restricted) {
    for (const char* level : {"Restricted", "full", "restricted "}) {
        reply_folder_status(true, level);
        const auto menu = menu_on(folder_.path());
        EXPECT_EQ(queried_menu(menu.Get(), CMF_NORMAL).result, 3) << level;
    }
}

TEST_F(FolderMenu, restriction_in_the_status_block_is_for_files_alone) {
    reply_folder_status(true);
    service_.set_flags(ORV_FLAG_UI_RESTRICTED);
    const auto menu = menu_on(folder_.path());
    EXPECT_EQ(queried_menu(menu.Get(), CMF_NORMAL).result, 3);
}

TEST_F(FolderMenu, other_selections_get_nothing_and_ask_nothing) {
    const auto file = folder_.make_file(L"plain.txt", "text");
    const auto inner = folder_.make_folder(L"inner");
    const auto refusing = select_paths({folder_.path()});
    refusing->answer = DV_E_FORMATETC;
    const auto unlockable = select_paths({folder_.path()});
    unlockable->lend_nothing = true;
    const auto cut = select_block(std::vector<std::byte>(sizeof(DROPFILES) - 1));
    for (const auto& selection :
         {select_paths({file}), select_paths({folder_.path(), inner}),
          select_paths({folder_.path() + L"\\none"}), select_paths({}), refusing, unlockable, cut}) {
        const ULONG references = selection->references();
        const auto menu = menu_on(selection.Get());
        const queried_menu queried(menu.Get(), CMF_NORMAL);
        EXPECT_EQ(queried.result, 0);
        EXPECT_THAT(queried.added, IsEmpty());
        EXPECT_EQ(selection->references(), references);
        EXPECT_EQ(selection->lock_count(), 0U);
    }
    EXPECT_EQ(queried_menu(menu_on(nullptr).Get(), CMF_NORMAL).result, 0);
    EXPECT_EQ(queried_menu(make_menu(class_ids::shell_extension).Get(), CMF_NORMAL).result, 0);
    EXPECT_THAT(sent(), IsEmpty());
}

TEST_F(FolderMenu, second_selection_takes_the_place_of_the_first) {
    reply_folder_status(true, "restricted");
    const auto menu = menu_on(folder_.path());
    const auto several = select_paths({folder_.path(), folder_.path()});
    ASSERT_EQ(initialize(menu.Get(), several.Get()), S_OK);
    EXPECT_EQ(queried_menu(menu.Get(), CMF_NORMAL).result, 0);
    reply_folder_status(true);
    ASSERT_EQ(initialize(menu.Get(), select_paths({folder_.path()}).Get()), S_OK);
    EXPECT_EQ(queried_menu(menu.Get(), CMF_NORMAL).result, 3);
}

TEST_F(FolderMenu, no_submenu_to_be_had_is_the_systems_error) {
    reply_folder_status(true);
    const auto menu = menu_on(folder_.path());
    const import_patch<decltype(CreateMenu)> patch(module_.handle(), "user32.dll", "CreateMenu",
                                                   []() WINAPI -> HMENU {
                                                       SetLastError(ERROR_NOT_ENOUGH_MEMORY);
                                                       return nullptr;
                                                   });
    const queried_menu queried(menu.Get(), CMF_NORMAL);
    EXPECT_EQ(static_cast<ULONG>(queried.result), 0x80070008UL);
    EXPECT_THAT(queried.added, IsEmpty());
}

TEST_F(FolderMenu, host_without_a_menu_gets_no_item_and_no_submenu_stays) {
    static HMENU made;
    static decltype(&CreateMenu) original;
    const import_patch<decltype(CreateMenu)> patch(module_.handle(), "user32.dll", "CreateMenu",
                                                   []() WINAPI -> HMENU { return made = original(); });
    original = patch.original();
    const auto menu = menu_on(folder_.path());
    EXPECT_LE(menu->QueryContextMenu(nullptr, 0, first, 0x7FFF, CMF_NORMAL), 0);
    EXPECT_NE(made, nullptr);
    EXPECT_FALSE(IsMenu(made));
}

// The calls that make the menu, with their arguments: what the host's menu shows does not tell them all.
std::vector<std::string> menu_calls;
decltype(&InsertMenuW) real_insert;
decltype(&SetMenuItemBitmaps) real_bitmaps;

BOOL WINAPI note_insert(HMENU menu, UINT position, UINT flags, UINT_PTR id, LPCWSTR text) {
    const std::wstring wide(text);
    menu_calls.push_back("insert " + std::to_string(position) + " flags " + std::to_string(flags) + " " +
                         std::string(wide.begin(), wide.end()));
    return real_insert(menu, position, flags, id, text);
}
BOOL WINAPI note_bitmaps(HMENU menu, UINT position, UINT flags, HBITMAP unchecked, HBITMAP checked) {
    menu_calls.push_back("bitmaps " + std::to_string(position) + " flags " + std::to_string(flags) +
                         (unchecked == nullptr && checked == nullptr ? " none" : " set"));
    return real_bitmaps(menu, position, flags, unchecked, checked);
}

TEST_F(FolderMenu, calls_are_made_by_position_in_order) {
    reply_folder_status(true);
    const auto menu = menu_on(folder_.path());
    const import_patch<decltype(InsertMenuW)> inserts(module_.handle(), "user32.dll", "InsertMenuW",
                                                      &note_insert);
    const import_patch<decltype(SetMenuItemBitmaps)> bitmaps(module_.handle(), "user32.dll",
                                                             "SetMenuItemBitmaps", &note_bitmaps);
    real_insert = inserts.original();
    real_bitmaps = bitmaps.original();
    menu_calls.clear();
    const queried_menu queried(menu.Get(), CMF_NORMAL);
    // 1024 is MF_BYPOSITION, 1040 that with MF_POPUP.
    EXPECT_THAT(menu_calls, ElementsAre("insert 0 flags 1024 <40000>", "bitmaps 0 flags 1024 none",
                                        "insert 1 flags 1024 <40001>", "bitmaps 1 flags 1024 none",
                                        "insert 1 flags 1040 Orvane", "bitmaps 1 flags 1024 set"));
}

}  // namespace
}  // namespace ov::test

#include "tools/stand_ins/menus/default_context_menu.h"

#include <gtest/gtest.h>
#include <wrl/client.h>

#include "testkit/files/temp_folder.h"
#include "tests/unit/tools/stand_ins/recording_handler.h"
#include "tests/unit/tools/stand_ins/test_class_key.h"
#include "tests/unit/tools/stand_ins/test_selection.h"
#include "tools/shellhost/menus/menu_query.h"

namespace ov::stand_ins {
namespace {

using Microsoft::WRL::ComPtr;
using shellhost::queried_menu;

class DefaultContextMenu : public testing::Test {
  protected:
    DefaultContextMenu() : registration(test_handler_class, record) {
        class_key.set(L"shellex\\ContextMenuHandlers\\Test", nullptr, text_of(test_handler_class));
        key = class_key.get();
    }

    ComPtr<IContextMenu> make(const test_selection& selection) {
        child = selection.item.get();
        DEFCONTEXTMENU description{};
        description.pidlFolder = selection.parent.get();
        description.psf = selection.folder.Get();
        description.cidl = 1;
        description.apidl = &child;
        description.cKeys = 1;
        description.aKeys = &key;
        ComPtr<IContextMenu> made;
        EXPECT_EQ(create_default_context_menu(&description, IID_PPV_ARGS(made.GetAddressOf())), S_OK);
        return made;
    }

    test_apartment apartment;
    handler_record record;
    handler_registration registration;
    test_class_key class_key;
    test::temp_folder folder;
    HKEY key = nullptr;
    PCUITEMID_CHILD child = nullptr;
};

TEST_F(DefaultContextMenu, registered_handler_adds_its_items_for_the_selection) {
    const test_selection file(folder.make_file(L"file.txt"));
    const queried_menu menu(make(file), CMF_NORMAL);
    EXPECT_EQ(menu.items().size(), 2U);
    EXPECT_EQ(record.initialised, 1);
    item_selection told;
    ASSERT_NE(record.selection, nullptr);
    ASSERT_EQ(read_selection(record.selection.Get(), told), S_OK);
    EXPECT_EQ(told.items.size(), 1U);
}

TEST_F(DefaultContextMenu, folder_opens_by_default) {
    const test_selection inner(folder.make_folder(L"inner"));
    const queried_menu menu(make(inner), CMF_NORMAL);
    const auto items = menu.items();
    ASSERT_EQ(items.size(), 3U);
    EXPECT_EQ(items[0].text, L"Open");
    EXPECT_TRUE(items[0].is_default);
}

TEST_F(DefaultContextMenu, default_verb_comes_only_from_handlers_that_may_change_it) {
    const test_selection file(folder.make_file(L"file.txt"));
    EXPECT_TRUE(queried_menu(make(file), CMF_DEFAULTONLY).items().empty());
    EXPECT_EQ(record.initialised, 0);
    const test_class_key handler_key(L"CLSID\\" + text_of(test_handler_class));
    handler_key.make(L"ShellEx\\MayChangeDefaultMenu");
    const queried_menu menu(make(file), CMF_DEFAULTONLY);
    ASSERT_EQ(menu.items().size(), 2U);
    EXPECT_TRUE(menu.items()[0].is_default);
    EXPECT_EQ(menu.invoke(0, nullptr), S_OK);
    EXPECT_EQ(record.invoked, std::vector<UINT>{0});
}

TEST_F(DefaultContextMenu, handlers_are_created_no_sooner_than_the_menu_is_asked_for) {
    const test_selection file(folder.make_file(L"file.txt"));
    const auto menu = make(file);
    EXPECT_EQ(record.initialised, 0);
    EXPECT_EQ(record.alive, 0);
}

TEST_F(DefaultContextMenu, bad_descriptions_are_refused) {
    ComPtr<IContextMenu> made;
    DEFCONTEXTMENU description{};
    EXPECT_EQ(create_default_context_menu(nullptr, IID_PPV_ARGS(made.GetAddressOf())), E_INVALIDARG);
    EXPECT_EQ(create_default_context_menu(&description, IID_PPV_ARGS(made.GetAddressOf())), E_INVALIDARG);
    EXPECT_EQ(create_default_context_menu(&description, IID_IContextMenu, nullptr), E_POINTER);
}

}  // namespace
}  // namespace ov::stand_ins

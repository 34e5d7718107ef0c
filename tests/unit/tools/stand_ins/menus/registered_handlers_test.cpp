#include "tools/stand_ins/menus/registered_handlers.h"

#include <gtest/gtest.h>
#include <wrl/client.h>

#include "testkit/files/temp_folder.h"
#include "tests/unit/tools/stand_ins/recording_handler.h"
#include "tests/unit/tools/stand_ins/test_class_key.h"

namespace ov::stand_ins {
namespace {

using Microsoft::WRL::ComPtr;

std::vector<registered_handler> handlers_of(const test_class_key& key) {
    std::vector<registered_handler> handlers;
    add_handlers_of_class(key.get(), handlers);
    return handlers;
}

TEST(RegisteredHandlers, class_without_handlers_gives_none) {
    const test_class_key key;
    EXPECT_TRUE(handlers_of(key).empty());
}

TEST(RegisteredHandlers, class_id_is_the_value_or_the_name) {
    const test_class_key key;
    key.set(L"shellex\\ContextMenuHandlers\\Named", nullptr, text_of(test_handler_class));
    key.make((L"shellex\\ContextMenuHandlers\\" + text_of(other_handler_class)).c_str());
    key.set(L"shellex\\ContextMenuHandlers\\Zz nonsense", nullptr, L"no class id");
    const auto handlers = handlers_of(key);
    ASSERT_EQ(handlers.size(), 2U);
    for (const registered_handler& handler : handlers) {
        const bool is_named = handler.name == L"Named";
        EXPECT_TRUE(IsEqualCLSID(handler.clsid, is_named ? test_handler_class : other_handler_class));
        EXPECT_FALSE(handler.may_change_default);
    }
}

TEST(RegisteredHandlers, same_class_twice_is_one_handler) {
    const test_class_key key;
    key.set(L"shellex\\ContextMenuHandlers\\One", nullptr, text_of(test_handler_class));
    key.set(L"shellex\\ContextMenuHandlers\\Two", nullptr, text_of(test_handler_class));
    EXPECT_EQ(handlers_of(key).size(), 1U);
}

TEST(RegisteredHandlers, may_change_default_menu_is_read_from_the_class) {
    const test_class_key key;
    key.set(L"shellex\\ContextMenuHandlers\\One", nullptr, text_of(test_handler_class));
    const test_class_key handler_class_key(L"CLSID\\" + text_of(test_handler_class));
    handler_class_key.make(L"ShellEx\\MayChangeDefaultMenu");
    const auto handlers = handlers_of(key);
    ASSERT_EQ(handlers.size(), 1U);
    EXPECT_TRUE(handlers[0].may_change_default);
}

TEST(RegisteredHandlers, directory_has_the_directory_classes_and_a_file_its_own) {
    const test::temp_folder folder;
    const test_class_key extension(L".orvanetest");
    const test_class_key prog_id;
    extension.set(nullptr, nullptr, prog_id.name());
    std::vector<registered_handler> handlers;
    prog_id.set(L"shellex\\ContextMenuHandlers\\One", nullptr, text_of(test_handler_class));
    for (const auto& key : class_keys_of_path(folder.make_file(L"file.orvanetest"))) {
        add_handlers_of_class(key.get(), handlers);
    }
    EXPECT_FALSE(handlers.empty());
    EXPECT_EQ(handlers.front().name, L"One");

    handlers.clear();
    for (const auto& key : class_keys_of_path(folder.path())) {
        add_handlers_of_class(key.get(), handlers);
    }
    for (const registered_handler& handler : handlers) {
        EXPECT_NE(handler.name, L"One");
    }
    EXPECT_TRUE(class_keys_of_path(folder.path() + L"\\missing").empty());
}

TEST(RegisteredHandlers, open_handler_creates_and_initialises) {
    const test_apartment apartment;
    handler_record record;
    const handler_registration registration(test_handler_class, record);
    ComPtr<IContextMenu> menu;
    EXPECT_EQ(
        open_handler({L"One", test_handler_class, false}, nullptr, nullptr, nullptr, menu.GetAddressOf()),
        S_OK);
    EXPECT_NE(menu, nullptr);
    EXPECT_EQ(record.initialised, 1);
    menu.Reset();
    EXPECT_EQ(record.alive, 0);
}

TEST(RegisteredHandlers, open_handler_tells_why_and_leaves_nothing) {
    const test_apartment apartment;
    ComPtr<IContextMenu> menu;
    EXPECT_EQ(
        open_handler({L"One", other_handler_class, false}, nullptr, nullptr, nullptr, menu.GetAddressOf()),
        REGDB_E_CLASSNOTREG);
    handler_record record;
    record.initialize_result = E_ACCESSDENIED;
    const handler_registration registration(test_handler_class, record);
    EXPECT_EQ(
        open_handler({L"One", test_handler_class, false}, nullptr, nullptr, nullptr, menu.GetAddressOf()),
        E_ACCESSDENIED);
    EXPECT_EQ(menu, nullptr);
    EXPECT_EQ(record.alive, 0);
}

}  // namespace
}  // namespace ov::stand_ins

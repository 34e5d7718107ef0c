#include <wrl/client.h>

#include <array>
#include <string>
#include <vector>

#include "module/state/class_ids.h"
#include "tools/shellhost/apartment.h"
#include "tools/shellhost/command_failure.h"
#include "tools/shellhost/commands.h"
#include "tools/shellhost/console.h"
#include "tools/shellhost/exit_codes.h"
#include "tools/shellhost/folder/namespace_root.h"
#include "tools/shellhost/menus/menu_query.h"
#include "tools/shellhost/product_module.h"
#include "tools/stand_ins/elevation.h"
#include "tools/stand_ins/items/item_paths.h"
#include "tools/stand_ins/menus/merged_menu.h"
#include "tools/stand_ins/menus/registered_handlers.h"

namespace ov::shellhost {

const wchar_t* const verbs_usage =
    L"shellhost verbs --restore|--addons [--no-consent] [--module DLL]\n"
    L"  Runs the default verb of an entry of the namespace folder, as a double-click does.\n"
    L"\n"
    L"  --restore     the entry One Click Restore\n"
    L"  --addons      the entry Addons\n"
    L"  --no-consent  where the system has no administrator prompt (Wine), declines in its place; consent "
    L"is\n"
    L"                given otherwise\n"
    L"  --module DLL  takes the product's classes from this file, whatever is registered\n";

namespace {

using Microsoft::WRL::ComPtr;

struct entry {
    const wchar_t* option;
    std::uint16_t type;
    CLSID handler;
};

constexpr std::array entries = {
    entry{L"--restore", one_click_restore_type, class_ids::one_click_restore},
    entry{L"--addons", addons_type, class_ids::addons},
};

void say_consent(stand_ins::consent answer) {
    print_note(answer == stand_ins::consent::given
                   ? L"This system has no administrator prompt: consent is given in its place."
                   : L"This system has no administrator prompt: it is declined in its place.");
}

const entry& read_entry(arguments& words) {
    const entry* chosen = nullptr;
    for (const entry& each : entries) {
        if (words.take_switch(each.option)) {
            if (chosen != nullptr) {
                throw usage_error(L"name one entry, not both");
            }
            chosen = &each;
        }
    }
    if (chosen == nullptr) {
        throw usage_error(L"name an entry: --restore or --addons");
    }
    return *chosen;
}

com::unique_child_id find_item(const namespace_root& root, const entry& wanted) {
    for (auto& item : items_of(root.folder.Get())) {
        if (type_of(root.folder.Get(), item.get()) == wanted.type) {
            return std::move(item);
        }
    }
    throw command_failure(
        L"the namespace folder does not show this entry now (restricted, or switched off by the driver)");
}

/// The menu that the folder gives for the item: the system's, with the handlers registered for it.
ComPtr<IContextMenu> menu_of_item(const namespace_root& root, PCUITEMID_CHILD item) {
    ComPtr<IContextMenu> menu;
    const HRESULT result = root.folder->GetUIObjectOf(nullptr, 1, &item, __uuidof(IContextMenu), nullptr,
                                                      reinterpret_cast<void**>(menu.GetAddressOf()));
    if (FAILED(result) || menu == nullptr) {
        throw command_failure(L"the folder gives no menu for the entry: " + describe(result));
    }
    return menu;
}

/// The entry's own handler, where no registration tells the system of it.
ComPtr<IContextMenu> menu_of_handler(const namespace_root& root, PCUITEMID_CHILD item, const entry& wanted) {
    ComPtr<IDataObject> data;
    HRESULT result = root.folder->GetUIObjectOf(nullptr, 1, &item, __uuidof(IDataObject), nullptr,
                                                reinterpret_cast<void**>(data.GetAddressOf()));
    ComPtr<IContextMenu> menu;
    if (SUCCEEDED(result)) {
        result = stand_ins::open_handler({L"", wanted.handler, true}, root.list.get(), data.Get(), nullptr,
                                         menu.GetAddressOf());
    }
    if (FAILED(result)) {
        throw command_failure(L"the entry's handler cannot be created: " + describe(result));
    }
    return menu;
}

}  // namespace

int run_verbs(arguments& words) {
    const entry& wanted = read_entry(words);
    const bool declines = words.take_switch(L"--no-consent");
    const std::wstring module = words.take_value(L"--module").value_or(L"");
    words.expect_end();

    const apartment com;
    stand_ins::set_elevation_answer(declines ? stand_ins::consent::declined : stand_ins::consent::given);
    stand_ins::set_elevation_listener(&say_consent);
    const product_module product(module);
    const namespace_root root = open_namespace_root();
    const auto item = find_item(root, wanted);
    const std::wstring name = stand_ins::name_of_item(root.folder.Get(), item.get(), SHGDN_NORMAL);
    const bool registered = !registered_module_of(wanted.handler).empty();
    const queried_menu menu(
        registered ? menu_of_item(root, item.get()) : menu_of_handler(root, item.get(), wanted),
        CMF_DEFAULTONLY);
    const auto items = menu.items();
    for (const menu_item& each : items) {
        print_line(name + L":" + line_of(each));
    }
    const UINT chosen = GetMenuDefaultItem(menu.menu(), FALSE, 0);
    if (items.empty() || (registered && chosen == static_cast<UINT>(-1))) {
        throw command_failure(L"'" + name + L"' has no default verb");
    }
    const UINT offset = registered ? chosen - queried_menu::first_id : 0;
    const HRESULT result = menu.invoke(offset, nullptr);
    print_line(name + L": returned " + describe(result));
    return SUCCEEDED(result) ? exit_done : exit_failed;
}

}  // namespace ov::shellhost

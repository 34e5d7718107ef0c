#include <shlwapi.h>
#include <wrl/client.h>

#include <string>
#include <vector>

#include "module/state/class_ids.h"
#include "tools/shellhost/apartment.h"
#include "tools/shellhost/commands.h"
#include "tools/shellhost/console.h"
#include "tools/shellhost/exit_codes.h"
#include "tools/shellhost/menus/file_selection.h"
#include "tools/shellhost/menus/menu_query.h"
#include "tools/shellhost/menus/menu_sources.h"
#include "tools/shellhost/product_module.h"
#include "tools/stand_ins/probes.h"

namespace ov::shellhost {

const wchar_t* const menu_usage =
    L"shellhost menu PATH... [--invoke COMMAND] [--extended] [--default-only] [--tracked] [--module DLL]\n"
    L"  Right-clicks a selection as Explorer does and prints the menu: the system's own, or, where that has\n"
    L"  no registered handlers (Wine), what these add to it. A command's number stands in brackets.\n"
    L"\n"
    L"  --invoke COMMAND  runs a command, named by its text (accelerators and case aside) or its number, "
    L"and\n"
    L"                    prints what it returned; a greyed one is run only when named by its number\n"
    L"  --extended        as with Shift held (CMF_EXTENDEDVERBS)\n"
    L"  --default-only    asks for the default verb only, as a double-click does (CMF_DEFAULTONLY)\n"
    L"  --tracked         under Wine, whose file systems keep no such mark: tells the product that files\n"
    L"                    are tracked ones; on Windows their own marks count\n"
    L"  --module DLL      takes the product's classes from this file, whatever is registered\n";

namespace {

using Microsoft::WRL::ComPtr;
using stand_ins::IMergedMenu;
using stand_ins::menu_part;

struct menu_options {
    std::vector<std::wstring> paths;
    std::optional<std::wstring> invoke;
    std::wstring module;
    UINT flags = CMF_NORMAL;
    bool as_tracked = false;
};

menu_options read_options(arguments& words) {
    menu_options options;
    options.invoke = words.take_value(L"--invoke");
    options.module = words.take_value(L"--module").value_or(L"");
    options.flags |= words.take_switch(L"--extended") ? CMF_EXTENDEDVERBS : 0;
    options.flags |= words.take_switch(L"--default-only") ? CMF_DEFAULTONLY : 0;
    options.as_tracked = words.take_switch(L"--tracked");
    options.paths = words.take_rest();
    if (options.paths.empty()) {
        throw usage_error(L"name a file or folder");
    }
    return options;
}

std::wstring title_of(const file_selection& selection) {
    const DWORD attributes = GetFileAttributesW(selection.paths.front().c_str());
    const bool is_directory = (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
    std::wstring title = L"Menu of " + selection.paths.front();
    if (selection.paths.size() > 1) {
        title += L" and " + std::to_wstring(selection.paths.size() - 1) + L" more";
    }
    return title + (is_directory ? L" (directory)" : L" (file)");
}

void print_part(const menu_part& part) {
    std::wstring line = L"  handler " + part.name + L": ";
    if (FAILED(part.open_result)) {
        line += L"cannot be created: " + describe(part.open_result);
    } else {
        line += L"returned " + describe(part.query_result);
    }
    print_line(line);
}

void print_menu(const file_selection& selection, const std::vector<menu_item>& items, IMergedMenu* merged) {
    print_line(title_of(selection));
    for (const menu_part& part : merged->parts()) {
        print_part(part);
    }
    if (items.empty()) {
        print_line(L"  (no items)");
    }
    for (const menu_item& item : items) {
        print_line(line_of(item));
    }
}

int invoke(const queried_menu& menu, const std::vector<menu_item>& items, const std::wstring& name) {
    const menu_item* item = find_command(items, name);
    if (item == nullptr) {
        print_error(L"the menu has no command '" + name + L"'");
        return exit_no_such_item;
    }
    const bool by_number = name == std::to_wstring(*item->offset);
    if (!item->is_enabled && !by_number) {
        print_error(L"'" + item->text + L"' is greyed; name its number to run it all the same");
        return exit_no_such_item;
    }
    const HRESULT result = menu.invoke(*item->offset, nullptr);
    print_line(L"[" + std::to_wstring(*item->offset) + L"] " + item->text + L": returned " +
               describe(result));
    return SUCCEEDED(result) ? exit_done : exit_failed;
}

}  // namespace

int run_menu(arguments& words) {
    const menu_options options = read_options(words);
    const apartment com;
    const product_module product(options.module, options.as_tracked);
    const file_selection selection = select_files(options.paths);
    auto sources =
        stand_ins::lacks_handlers_in_menus() ? registered_handlers(selection) : system_menu(selection);
    if (!options.module.empty() && registered_module_of(class_ids::shell_extension).empty()) {
        sources.push_back(unregistered_handler(selection));
    }
    ComPtr<IContextMenu> merged;
    const HRESULT made = stand_ins::make_merged_menu(sources, IID_PPV_ARGS(merged.GetAddressOf()));
    ComPtr<IMergedMenu> parts;
    if (FAILED(made) || FAILED(merged.As(&parts))) {
        print_error(L"no menu can be made: " + describe(made));
        return exit_failed;
    }
    if (sources.empty()) {
        print_error(L"no context-menu handler is registered for this selection");
    }
    const queried_menu menu(merged, options.flags);
    const auto items = menu.items();
    print_menu(selection, items, parts.Get());
    return options.invoke ? invoke(menu, items, *options.invoke) : exit_done;
}

}  // namespace ov::shellhost

#include "tools/shellhost/script/script_commands.h"

#include <shlobj.h>
#include <shlwapi.h>

#include <algorithm>
#include <array>
#include <memory>

#include "ovufc/com/task_memory.h"
#include "tools/shellhost/console.h"
#include "tools/shellhost/menus/menu_tree.h"
#include "tools/shellhost/script/input.h"
#include "tools/shellhost/script/open_windows.h"
#include "tools/shellhost/script/parts/accessible_parts.h"
#include "tools/shellhost/script/parts/control_parts.h"
#include "tools/shellhost/script/shown_items.h"
#include "tools/wine_window/system.h"

namespace ov::shellhost {

namespace {

/// A command of the script and the rest of its line.
struct request {
    browser_window& window;
    const std::wstring& rest;
    script_reply& reply;

    void say(const std::wstring& line) const { reply.lines.push_back(line); }
    void fail(const std::wstring& why) const { reply.error = why; }
};

/// Wine's controls are not accessible one item at a time; what they show is read from them.
std::unique_ptr<shown_parts> parts_of(const browser_window& window) {
    if (!wine_window::system_is_wine()) {
        return std::make_unique<accessible_parts>(window.handle());
    }
    HWND view = nullptr;
    (void)IUnknown_GetWindow(window.view().Get(), &view);
    return std::make_unique<control_parts>(window.handle(), view);
}

std::wstring join(const std::vector<std::wstring>& texts) {
    std::wstring line;
    for (const std::wstring& text : texts) {
        line += (line.empty() ? L"" : L" | ") + text;
    }
    return line;
}

void print_title(const request& asked) {
    asked.say(asked.window.title());
}

void print_tree(const request& asked) {
    for (const pane_node& node : parts_of(asked.window)->nodes()) {
        asked.say(std::wstring(std::size_t{2} * node.depth, L' ') + node.text +
                  (node.is_selected ? L" *" : L""));
    }
}

void print_view(const request& asked) {
    for (const auto& item : items_of_view(asked.window.view().Get())) {
        asked.say(join(item));
    }
}

void print_columns(const request& asked) {
    asked.say(join(columns_of_view(asked.window.view().Get())));
}

void print_menus(const request& asked) {
    for (const HWND window : open_menus()) {
        asked.say(L"menu");
        for (const menu_item& item : read_menu(menu_of(window), 0, nullptr)) {
            asked.say(line_of(item));
        }
    }
}

BOOL CALLBACK say_child(HWND child, LPARAM parameter) {
    const std::wstring text = window_text(child);
    if (IsWindowVisible(child) && !text.empty()) {
        reinterpret_cast<const request*>(parameter)->say(L"  " + text);
    }
    return TRUE;
}

void print_dialogs(const request& asked) {
    for (const HWND dialog : open_dialogs()) {
        asked.say(L"dialog " + window_text(dialog));
        EnumChildWindows(dialog, say_child, reinterpret_cast<LPARAM>(&asked));
    }
}

void answer_dialog(const request& asked) {
    const auto dialogs = open_dialogs();
    if (dialogs.empty()) {
        return asked.fail(L"no dialog is open");
    }
    const int button = asked.rest == L"cancel" ? IDCANCEL : IDOK;
    PostMessageW(dialogs.back(), WM_COMMAND, MAKEWPARAM(button, BN_CLICKED), 0);
}

void browse(const request& asked) {
    PIDLIST_ABSOLUTE list = nullptr;
    HRESULT result = SHParseDisplayName(asked.rest.c_str(), nullptr, &list, 0, nullptr);
    const com::unique_absolute_id_list owner(list);
    if (SUCCEEDED(result)) {
        result = asked.window.browse(list);
    }
    if (FAILED(result)) {
        asked.fail(describe(result));
    }
}

/// A point on the name that a part shows: near its beginning, as a name may be shorter than its place.
POINT point_on(const RECT& place) {
    constexpr LONG inset = 12;
    return {std::min(place.left + inset, (place.left + place.right) / 2), (place.top + place.bottom) / 2};
}

void click_item(const request& asked, mouse_button button, int times) {
    const auto view = asked.window.view();
    const auto items = items_of_view(view.Get());
    const auto found = std::find_if(items.begin(), items.end(), [&](const auto& texts) {
        return !texts.empty() && texts.front() == asked.rest;
    });
    if (found == items.end()) {
        return asked.fail(L"the view shows no such item");
    }
    const auto index = static_cast<int>(found - items.begin());
    (void)view->SelectItem(index, SVSI_ENSUREVISIBLE);
    const auto place = parts_of(asked.window)->place_of_item(asked.rest, index);
    if (!place) {
        return asked.fail(L"the item has no place on the screen");
    }
    click_at(point_on(*place), button, times);
}

void click(const request& asked) {
    click_item(asked, mouse_button::left, 1);
}
void double_click(const request& asked) {
    click_item(asked, mouse_button::left, 2);
}
void right_click(const request& asked) {
    click_item(asked, mouse_button::right, 1);
}

void click_tree(const request& asked) {
    for (const pane_node& node : parts_of(asked.window)->nodes()) {
        if (node.text == asked.rest && !IsRectEmpty(&node.place)) {
            return click_at(point_on(node.place), mouse_button::left, 1);
        }
    }
    asked.fail(L"the tree shows no such node");
}

void click_menu(const request& asked) {
    for (const HWND window : open_menus()) {
        const HMENU menu = menu_of(window);
        for (UINT i = 0; static_cast<int>(i) < GetMenuItemCount(menu); ++i) {
            RECT place{};
            if (menu_text(menu, i) == asked.rest && GetMenuItemRect(nullptr, menu, i, &place)) {
                return click_at(point_on(place), mouse_button::left, 1);
            }
        }
    }
    asked.fail(L"no open menu has such an item");
}

void expand(const request& asked) {
    if (!parts_of(asked.window)->expand(asked.rest)) {
        asked.fail(L"the tree shows no such node");
    }
}

void press(const request& asked) {
    if (!press_key(asked.rest)) {
        asked.fail(L"unknown key");
    }
}

void set_mode(const request& asked) {
    if (asked.rest == L"icons") {
        asked.window.set_mode(command_large_icons);
    } else if (asked.rest == L"list") {
        asked.window.set_mode(command_list);
    } else if (asked.rest == L"details") {
        asked.window.set_mode(command_details);
    } else {
        asked.fail(L"unknown mode");
    }
}

void close(const request& asked) {
    PostMessageW(asked.window.handle(), WM_CLOSE, 0, 0);
}

void print_help(const request& asked);

struct script_command {
    const wchar_t* name;
    void (*run)(const request& asked);
    const wchar_t* help;
};

constexpr std::array script_commands = {
    script_command{L"help", &print_help, L"lists the commands"},
    script_command{L"title", &print_title, L"the window's title"},
    script_command{L"tree", &print_tree, L"the nodes of the navigation pane; * marks the selected one"},
    script_command{L"view", &print_view, L"the items of the view in order, with their columns"},
    script_command{L"columns", &print_columns, L"the header texts of the details view"},
    script_command{L"menus", &print_menus, L"the menus that are open now"},
    script_command{L"dialogs", &print_dialogs, L"the message boxes that are open now, with their texts"},
    script_command{L"answer", &answer_dialog, L"answer ok|cancel: presses that button of the topmost box"},
    script_command{L"browse", &browse, L"browse PLACE: goes to a path or \"::{class id}\""},
    script_command{L"click", &click, L"click ITEM: a real click on an item of the view"},
    script_command{L"double-click", &double_click, L"double-click ITEM"},
    script_command{L"right-click", &right_click, L"right-click ITEM"},
    script_command{L"click-tree", &click_tree, L"click-tree NODE: a real click on a node of the pane"},
    script_command{L"click-menu", &click_menu, L"click-menu TEXT: a real click on an item of an open menu"},
    script_command{L"expand", &expand, L"expand NODE: opens a node of the navigation pane"},
    script_command{L"key", &press, L"key NAME: presses enter, escape, down, up, ... or a letter"},
    script_command{L"mode", &set_mode, L"mode icons|list|details"},
    script_command{L"close", &close, L"closes the window"},
};

void print_help(const request& asked) {
    for (const script_command& command : script_commands) {
        asked.say(std::wstring(command.name) + L": " + command.help);
    }
    asked.say(L"wait: until the window has settled");
    asked.say(L"wait-menu, wait-dialog: until one is open");
    asked.say(L"wait-empty-menu: until a menu was asked for that has nothing to show");
}

}  // namespace

script_reply run_script_command(browser_window& window, const std::wstring& line) {
    const std::size_t end = line.find(L' ');
    const std::wstring name = line.substr(0, end);
    const std::wstring rest = end == std::wstring::npos ? L"" : line.substr(end + 1);
    script_reply reply;
    for (const script_command& command : script_commands) {
        if (name == command.name) {
            command.run({window, rest, reply});
            return reply;
        }
    }
    reply.error = L"unknown command '" + name + L"'";
    return reply;
}

std::wstring state_of(const browser_window& window) {
    int count = 0;
    if (const auto view = window.view(); view != nullptr) {
        (void)view->ItemCount(SVGIO_ALLVIEW, &count);
    }
    return window.title() + L"/" + std::to_wstring(window.is_at_rest()) + L"/" + std::to_wstring(count) +
           L"/" + std::to_wstring(parts_of(window)->nodes().size());
}

}  // namespace ov::shellhost

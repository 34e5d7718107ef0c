#include "tools/shellhost/window/window_menu.h"

#include <array>

namespace ov::shellhost {

namespace {

struct menu_row {
    int command;
    const wchar_t* text;
};

constexpr menu_row separator{0, nullptr};

constexpr std::array go_rows = {
    menu_row{command_back, L"&Back\tAlt+Left"},     menu_row{command_forward, L"&Forward\tAlt+Right"},
    menu_row{command_up, L"&Up one level\tAlt+Up"}, separator,
    menu_row{command_home, L"&Orvane\tAlt+Home"},   separator,
    menu_row{command_close, L"&Close\tAlt+F4"}};

constexpr std::array view_rows = {
    menu_row{command_large_icons, L"Large &icons\tCtrl+1"}, menu_row{command_list, L"&List\tCtrl+2"},
    menu_row{command_details, L"&Details\tCtrl+3"}, separator, menu_row{command_refresh, L"&Refresh\tF5"}};

constexpr std::array keys = {
    ACCEL{FALT | FVIRTKEY, VK_LEFT, command_back}, ACCEL{FALT | FVIRTKEY, VK_RIGHT, command_forward},
    ACCEL{FALT | FVIRTKEY, VK_UP, command_up},     ACCEL{FALT | FVIRTKEY, VK_HOME, command_home},
    ACCEL{FVIRTKEY, VK_F5, command_refresh},       ACCEL{FCONTROL | FVIRTKEY, '1', command_large_icons},
    ACCEL{FCONTROL | FVIRTKEY, '2', command_list}, ACCEL{FCONTROL | FVIRTKEY, '3', command_details},
};

template <std::size_t Count>
HMENU make_popup(const std::array<menu_row, Count>& rows) {
    const HMENU popup = CreatePopupMenu();
    for (const menu_row& row : rows) {
        AppendMenuW(popup, row.text != nullptr ? MF_STRING : MF_SEPARATOR, static_cast<UINT_PTR>(row.command),
                    row.text);
    }
    return popup;
}

}  // namespace

HMENU make_menu_bar() {
    const HMENU bar = CreateMenu();
    AppendMenuW(bar, MF_POPUP, reinterpret_cast<UINT_PTR>(make_popup(go_rows)), L"&Go");
    AppendMenuW(bar, MF_POPUP, reinterpret_cast<UINT_PTR>(make_popup(view_rows)), L"&View");
    return bar;
}

HACCEL make_keys() {
    auto table = keys;
    return CreateAcceleratorTableW(table.data(), static_cast<int>(table.size()));
}

}  // namespace ov::shellhost

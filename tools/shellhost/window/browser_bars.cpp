#include "tools/shellhost/window/browser_bars.h"

#include <commctrl.h>

#include <array>

namespace ov::shellhost {

namespace {

constexpr int place_id = 10;
constexpr int place_margin = 8;
constexpr int place_padding = 3;

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

int height_of(HWND window) {
    RECT bounds{};
    GetWindowRect(window, &bounds);
    return bounds.bottom - bounds.top;
}

TBBUTTON button(int picture, int command, BYTE style) {
    TBBUTTON made{};
    made.iBitmap = picture;
    made.idCommand = command;
    made.fsState = TBSTATE_ENABLED;
    made.fsStyle = style;
    return made;
}

int add_pictures(HWND bar, UINT_PTR which) {
    return static_cast<int>(
        SendMessageW(bar, TB_LOADIMAGES, which, reinterpret_cast<LPARAM>(HINST_COMMCTRL)));
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

void tool_bar::create(HWND parent) {
    bar_ = CreateWindowExW(0, TOOLBARCLASSNAMEW, nullptr,
                           WS_CHILD | WS_VISIBLE | TBSTYLE_FLAT | TBSTYLE_TOOLTIPS | CCS_TOP, 0, 0, 0, 0,
                           parent, nullptr, GetModuleHandleW(nullptr), nullptr);
    SendMessageW(bar_, TB_BUTTONSTRUCTSIZE, sizeof(TBBUTTON), 0);
    const int history = add_pictures(bar_, IDB_HIST_SMALL_COLOR);
    const int view = add_pictures(bar_, IDB_VIEW_SMALL_COLOR);
    std::array buttons = {
        button(history + HIST_BACK, command_back, BTNS_BUTTON),
        button(history + HIST_FORWARD, command_forward, BTNS_BUTTON),
        button(view + VIEW_PARENTFOLDER, command_up, BTNS_BUTTON),
        button(0, 0, BTNS_SEP),
        button(view + VIEW_LARGEICONS, command_large_icons, BTNS_CHECKGROUP),
        button(view + VIEW_LIST, command_list, BTNS_CHECKGROUP),
        button(view + VIEW_DETAILS, command_details, BTNS_CHECKGROUP),
        button(0, 0, BTNS_SEP),
    };
    SendMessageW(bar_, TB_ADDBUTTONSW, buttons.size(), reinterpret_cast<LPARAM>(buttons.data()));
    place_ = CreateWindowExW(
        WS_EX_CLIENTEDGE, WC_EDITW, nullptr, WS_CHILD | WS_VISIBLE | ES_READONLY | ES_AUTOHSCROLL, 0, 0, 0, 0,
        bar_, reinterpret_cast<HMENU>(static_cast<INT_PTR>(place_id)), GetModuleHandleW(nullptr), nullptr);
    fit_font();
    resize();
}

void tool_bar::resize() const {
    SendMessageW(bar_, TB_AUTOSIZE, 0, 0);
    RECT bar{};
    RECT last{};
    GetClientRect(bar_, &bar);
    const auto count = SendMessageW(bar_, TB_BUTTONCOUNT, 0, 0);
    SendMessageW(bar_, TB_GETITEMRECT, static_cast<WPARAM>(count - 1), reinterpret_cast<LPARAM>(&last));
    MoveWindow(place_, last.right + place_margin, place_padding, bar.right - last.right - 2 * place_margin,
               bar.bottom - 2 * place_padding, TRUE);
}

void tool_bar::fit_font() {
    NONCLIENTMETRICSW metrics{};
    metrics.cbSize = sizeof metrics;
    SystemParametersInfoForDpi(SPI_GETNONCLIENTMETRICS, sizeof metrics, &metrics, 0, GetDpiForWindow(bar_));
    unique_font fitting(CreateFontIndirectW(&metrics.lfMessageFont));
    SendMessageW(place_, WM_SETFONT, reinterpret_cast<WPARAM>(fitting.get()), TRUE);
    font_ = std::move(fitting);
}

int tool_bar::height() const {
    return height_of(bar_);
}

void tool_bar::show_place(const std::wstring& place) const {
    SetWindowTextW(place_, place.c_str());
}

void tool_bar::show_mode(int command) const {
    for (const int each : {command_large_icons, command_list, command_details}) {
        SendMessageW(bar_, TB_CHECKBUTTON, static_cast<WPARAM>(each), MAKELPARAM(each == command, 0));
    }
}

void status_bar::create(HWND parent) {
    bar_ = CreateWindowExW(0, STATUSCLASSNAMEW, nullptr, WS_CHILD | WS_VISIBLE | SBARS_SIZEGRIP, 0, 0, 0, 0,
                           parent, nullptr, GetModuleHandleW(nullptr), nullptr);
}

void status_bar::resize() const {
    SendMessageW(bar_, WM_SIZE, 0, 0);
}

int status_bar::height() const {
    return height_of(bar_);
}

void status_bar::show(const std::wstring& text) const {
    SendMessageW(bar_, SB_SETTEXTW, 0, reinterpret_cast<LPARAM>(text.c_str()));
}

}  // namespace ov::shellhost

#include "tools/shellhost/script/open_windows.h"

#include <algorithm>
#include <array>

namespace ov::shellhost {

namespace {

constexpr UINT message_get_menu = 0x01E1;  // MN_GETHMENU, which the headers leave out.
// The classes that the system itself keeps for menus and dialogs ("About Window Classes").
constexpr const wchar_t* menu_class = L"#32768";
constexpr const wchar_t* dialog_class = L"#32770";

struct own_windows {
    const wchar_t* class_name;
    std::vector<HWND> found;
};

BOOL CALLBACK collect_own(HWND window, LPARAM parameter) {
    auto& search = *reinterpret_cast<own_windows*>(parameter);
    DWORD process = 0;
    GetWindowThreadProcessId(window, &process);
    std::array<wchar_t, 64> name{};
    GetClassNameW(window, name.data(), static_cast<int>(name.size()));
    if (process == GetCurrentProcessId() && IsWindowVisible(window) &&
        lstrcmpiW(name.data(), search.class_name) == 0) {
        search.found.push_back(window);
    }
    return TRUE;
}

std::vector<HWND> own_windows_of(const wchar_t* class_name) {
    own_windows search{class_name, {}};
    EnumWindows(collect_own, reinterpret_cast<LPARAM>(&search));
    // Windows come with the topmost first; a submenu lies above the menu that it belongs to.
    std::reverse(search.found.begin(), search.found.end());
    return search.found;
}

}  // namespace

std::vector<HWND> open_menus() {
    return own_windows_of(menu_class);
}

HMENU menu_of(HWND menu_window) {
    return reinterpret_cast<HMENU>(SendMessageW(menu_window, message_get_menu, 0, 0));
}

std::vector<HWND> open_dialogs() {
    return own_windows_of(dialog_class);
}

std::wstring window_text(HWND window) {
    const LRESULT length = SendMessageW(window, WM_GETTEXTLENGTH, 0, 0);
    std::wstring text(static_cast<std::size_t>(length) + 1, L'\0');
    text.resize(static_cast<std::size_t>(
        SendMessageW(window, WM_GETTEXT, text.size(), reinterpret_cast<LPARAM>(text.data()))));
    return text;
}

}  // namespace ov::shellhost

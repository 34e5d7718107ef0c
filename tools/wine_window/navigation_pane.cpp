#include "tools/wine_window/navigation_pane.h"

#include <array>

#include "tools/stand_ins/system.h"

namespace ov::wine_window {

namespace {

constexpr const wchar_t* splitter_class = L"eb_navpane";

BOOL CALLBACK find_splitter(HWND window, LPARAM found) {
    std::array<wchar_t, 32> name{};
    GetClassNameW(window, name.data(), static_cast<int>(name.size()));
    if (lstrcmpiW(name.data(), splitter_class) != 0) {
        return TRUE;
    }
    *reinterpret_cast<HWND*>(found) = window;
    return FALSE;
}

}  // namespace

void set_navigation_pane_width(HWND browser, int width) noexcept {
    HWND splitter = nullptr;
    if (!stand_ins::system_is_wine()) {
        return;
    }
    EnumChildWindows(browser, find_splitter, reinterpret_cast<LPARAM>(&splitter));
    if (splitter == nullptr) {
        return;
    }
    RECT place{};
    GetWindowRect(splitter, &place);
    MapWindowPoints(nullptr, GetParent(splitter), reinterpret_cast<POINT*>(&place), 2);
    const LPARAM start = MAKELPARAM(1, 1);
    const LPARAM end = MAKELPARAM(1 + width - place.left, 1);
    SendMessageW(splitter, WM_LBUTTONDOWN, MK_LBUTTON, start);
    SendMessageW(splitter, WM_MOUSEMOVE, MK_LBUTTON, end);
    SendMessageW(splitter, WM_LBUTTONUP, 0, end);
}

}  // namespace ov::wine_window

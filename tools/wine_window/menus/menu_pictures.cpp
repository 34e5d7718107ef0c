#include "tools/wine_window/menus/menu_pictures.h"

#include <algorithm>

#include "ovufc/win/ui_handle.h"

namespace ov::wine_window {

namespace {

/// Pictures stand in the column of the check marks; in one of their own Wine would cut the texts.
void share_mark_column(HMENU menu) noexcept {
    MENUINFO info{};
    info.cbSize = sizeof info;
    info.fMask = MIM_STYLE;
    GetMenuInfo(menu, &info);
    info.dwStyle |= MNS_CHECKORBMP;
    SetMenuInfo(menu, &info);
}

bool has_alpha(HBITMAP bitmap) noexcept {
    constexpr WORD bits_with_alpha = 32;
    BITMAP description{};
    return GetObjectW(bitmap, sizeof description, &description) != 0 &&
           description.bmBitsPixel == bits_with_alpha;
}

}  // namespace

menu_pictures::menu_pictures(HMENU menu) {
    take_over(menu);
}

void menu_pictures::take_over(HMENU menu) {
    share_mark_column(menu);
    for (int i = 0; i < GetMenuItemCount(menu); ++i) {
        MENUITEMINFOW info{};
        info.cbSize = sizeof info;
        info.fMask = MIIM_CHECKMARKS | MIIM_BITMAP | MIIM_DATA | MIIM_SUBMENU;
        if (!GetMenuItemInfoW(menu, static_cast<UINT>(i), TRUE, &info)) {
            continue;
        }
        if (IsMenu(info.hSubMenu)) {
            take_over(info.hSubMenu);
        }
        const HBITMAP bitmap = info.hbmpUnchecked;
        if (info.hbmpItem == nullptr && info.dwItemData == 0 && bitmap != nullptr && has_alpha(bitmap)) {
            bitmaps_.push_back(bitmap);
            info.fMask = MIIM_CHECKMARKS | MIIM_BITMAP | MIIM_DATA;
            info.hbmpItem = HBMMENU_CALLBACK;
            info.hbmpChecked = nullptr;
            info.hbmpUnchecked = nullptr;
            info.dwItemData = reinterpret_cast<ULONG_PTR>(bitmap);
            SetMenuItemInfoW(menu, static_cast<UINT>(i), TRUE, &info);
        }
    }
}

HBITMAP menu_pictures::find(ULONG_PTR item_data) const noexcept {
    const auto wanted = reinterpret_cast<HBITMAP>(item_data);
    const auto found = std::find(bitmaps_.begin(), bitmaps_.end(), wanted);
    return found != bitmaps_.end() ? *found : nullptr;
}

bool menu_pictures::measure(MEASUREITEMSTRUCT& asked) const noexcept {
    if (asked.CtlType != ODT_MENU || find(asked.itemData) == nullptr) {
        return false;
    }
    asked.itemWidth = static_cast<UINT>(GetSystemMetrics(SM_CXSMICON));
    asked.itemHeight = static_cast<UINT>(GetSystemMetrics(SM_CYSMICON));
    return true;
}

bool menu_pictures::draw(const DRAWITEMSTRUCT& asked) const noexcept {
    const HBITMAP bitmap = asked.CtlType == ODT_MENU ? find(asked.itemData) : nullptr;
    BITMAP size{};
    const win::unique_memory_dc source(CreateCompatibleDC(asked.hDC));
    if (bitmap == nullptr || !source || GetObjectW(bitmap, sizeof size, &size) == 0) {
        return false;
    }
    // A picture of the mark column's own width leaves the text its distance.
    const int width = std::min<int>(size.bmWidth, GetSystemMetrics(SM_CXSMICON));
    const int height = std::min<int>(size.bmHeight, GetSystemMetrics(SM_CYSMICON));
    const HGDIOBJ previous = SelectObject(source.get(), bitmap);
    constexpr BLENDFUNCTION blend{AC_SRC_OVER, 0, 255, AC_SRC_ALPHA};
    SetStretchBltMode(asked.hDC, HALFTONE);
    GdiAlphaBlend(asked.hDC, asked.rcItem.left, asked.rcItem.top, width, height, source.get(), 0, 0,
                  size.bmWidth, size.bmHeight, blend);
    SelectObject(source.get(), previous);
    return true;
}

}  // namespace ov::wine_window

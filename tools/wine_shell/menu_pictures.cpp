#include "tools/wine_shell/menu_pictures.h"

#include <algorithm>
#include <iterator>

#include "tools/wine_shell/system.h"

namespace ov::wine_shell {

namespace {

struct device_traits {
    using type = HDC;
    static type invalid() noexcept { return nullptr; }
    static void close(type value) noexcept { DeleteDC(value); }
};
using unique_device = win::unique_handle<device_traits>;

/// Selects a bitmap into a device for the length of a scope.
class selected_bitmap {
  public:
    selected_bitmap(HDC device, HBITMAP bitmap) noexcept
        : device_(device), previous_(SelectObject(device, bitmap)) {}
    selected_bitmap(const selected_bitmap&) = delete;
    selected_bitmap& operator=(const selected_bitmap&) = delete;
    ~selected_bitmap() { SelectObject(device_, previous_); }

  private:
    HDC device_;
    HGDIOBJ previous_;
};

/// A copy of `mark` with the menu's background where it is transparent; empty for a bitmap without alpha.
unique_bitmap draw_on_menu(HBITMAP mark) {
    BITMAP size{};
    if (GetObjectW(mark, sizeof size, &size) == 0 || size.bmBitsPixel != 32) {
        return {};
    }
    // A picture of the mark column's own width leaves the text its distance.
    const int width = std::min<int>(size.bmWidth, GetSystemMetrics(SM_CXSMICON));
    const int height = std::min<int>(size.bmHeight, GetSystemMetrics(SM_CYSMICON));
    BITMAPINFO info{};
    info.bmiHeader.biSize = sizeof info.bmiHeader;
    info.bmiHeader.biWidth = width;
    info.bmiHeader.biHeight = height;
    info.bmiHeader.biPlanes = 1;
    info.bmiHeader.biBitCount = 32;
    void* bits = nullptr;
    unique_bitmap drawn(CreateDIBSection(nullptr, &info, DIB_RGB_COLORS, &bits, nullptr, 0));
    const unique_device source(CreateCompatibleDC(nullptr));
    const unique_device target(CreateCompatibleDC(nullptr));
    if (!drawn || !source || !target) {
        return {};
    }
    const selected_bitmap from(source.get(), mark);
    const selected_bitmap to(target.get(), drawn.get());
    const RECT whole{0, 0, width, height};
    FillRect(target.get(), &whole, GetSysColorBrush(COLOR_MENU));
    constexpr BLENDFUNCTION blend{AC_SRC_OVER, 0, 255, AC_SRC_ALPHA};
    SetStretchBltMode(target.get(), HALFTONE);
    GdiAlphaBlend(target.get(), 0, 0, width, height, source.get(), 0, 0, size.bmWidth, size.bmHeight, blend);
    return drawn;
}

/// Pictures stand in the column of the check marks; in one of their own Wine would cut the texts.
void share_mark_column(HMENU menu) noexcept {
    MENUINFO info{};
    info.cbSize = sizeof info;
    info.fMask = MIM_STYLE;
    GetMenuInfo(menu, &info);
    info.dwStyle |= MNS_CHECKORBMP;
    SetMenuInfo(menu, &info);
}

}  // namespace

std::vector<unique_bitmap> show_marks_as_pictures(HMENU menu) {
    std::vector<unique_bitmap> drawn;
    if (system_is_wine()) {
        share_mark_column(menu);
    }
    for (int i = 0; system_is_wine() && i < GetMenuItemCount(menu); ++i) {
        MENUITEMINFOW info{};
        info.cbSize = sizeof info;
        info.fMask = MIIM_CHECKMARKS | MIIM_BITMAP | MIIM_SUBMENU;
        if (!GetMenuItemInfoW(menu, static_cast<UINT>(i), TRUE, &info)) {
            continue;
        }
        if (IsMenu(info.hSubMenu)) {
            auto deeper = show_marks_as_pictures(info.hSubMenu);
            drawn.insert(drawn.end(), std::make_move_iterator(deeper.begin()),
                         std::make_move_iterator(deeper.end()));
        }
        unique_bitmap picture = info.hbmpItem == nullptr && info.hbmpUnchecked != nullptr
                                    ? draw_on_menu(info.hbmpUnchecked)
                                    : unique_bitmap();
        if (picture) {
            info.fMask = MIIM_CHECKMARKS | MIIM_BITMAP;
            info.hbmpItem = picture.get();
            info.hbmpChecked = nullptr;
            info.hbmpUnchecked = nullptr;
            SetMenuItemInfoW(menu, static_cast<UINT>(i), TRUE, &info);
            drawn.push_back(std::move(picture));
        }
    }
    return drawn;
}

}  // namespace ov::wine_shell

#pragma once

#include <windows.h>

#include "ovufc/win/handle.h"

/// Owners of menu and GDI handles.
namespace ov::win {

struct icon_traits {
    using type = HICON;
    static type invalid() noexcept { return nullptr; }
    static void close(type value) noexcept { DestroyIcon(value); }
};
/// An icon of our own (not a shared one); destroyed with DestroyIcon.
using unique_icon = unique_handle<icon_traits>;

struct bitmap_traits {
    using type = HBITMAP;
    static type invalid() noexcept { return nullptr; }
    static void close(type value) noexcept { DeleteObject(value); }
};
/// Deleted with DeleteObject; must not be selected into a device context by then.
using unique_bitmap = unique_handle<bitmap_traits>;

struct font_traits {
    using type = HFONT;
    static type invalid() noexcept { return nullptr; }
    static void close(type value) noexcept { DeleteObject(value); }
};
/// From CreateFontIndirect; deleted with DeleteObject; no control may use it by then.
using unique_font = unique_handle<font_traits>;

struct memory_dc_traits {
    using type = HDC;
    static type invalid() noexcept { return nullptr; }
    static void close(type value) noexcept { DeleteDC(value); }
};
/// From CreateCompatibleDC; deleted with DeleteDC.
using unique_memory_dc = unique_handle<memory_dc_traits>;

struct screen_dc_traits {
    using type = HDC;
    static type invalid() noexcept { return nullptr; }
    static void close(type value) noexcept { ReleaseDC(nullptr, value); }
};
/// From GetDC(nullptr); given back with ReleaseDC.
using unique_screen_dc = unique_handle<screen_dc_traits>;

struct menu_traits {
    using type = HMENU;
    static type invalid() noexcept { return nullptr; }
    static void close(type value) noexcept { DestroyMenu(value); }
};
/// A menu that is not part of another: once inserted as a submenu it belongs to that one, so `release` it
/// then.
using unique_menu = unique_handle<menu_traits>;

}  // namespace ov::win

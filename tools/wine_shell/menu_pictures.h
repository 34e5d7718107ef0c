#pragma once

#include <windows.h>

#include <vector>

#include "ovufc/win/handle.h"

namespace ov::wine_shell {

struct bitmap_traits {
    using type = HBITMAP;
    static type invalid() noexcept { return nullptr; }
    static void close(type value) noexcept { DeleteObject(value); }
};
using unique_bitmap = win::unique_handle<bitmap_traits>;

/// Shows a menu's check-mark bitmaps as Windows draws them: whole, and transparent where their alpha says so.
/// Wine cuts them to the size of a check mark and draws what is transparent black.
///
/// Each is drawn onto the menu's background and set as the item's picture, submenus included; the bitmaps
/// returned must live as long as the menu is shown. On Windows nothing is done.
[[nodiscard]] std::vector<unique_bitmap> show_marks_as_pictures(HMENU menu);

}  // namespace ov::wine_shell

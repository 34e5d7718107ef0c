#pragma once

#include "ovufc/win/ui_handle.h"

namespace ov::shell {

/// The size of menu buttons in pixels: one metric for both sides, the icon is square.
[[nodiscard]] int menu_icon_side() noexcept;

/// The product's icon, `side` pixels wide and high, destroyed by its owner; null when it cannot be loaded.
[[nodiscard]] win::unique_icon load_menu_icon(int side) noexcept;

/// `icon` drawn into a 32-bit bitmap with alpha, as menu items want it, `side` pixels wide and high; null on
/// any failure (the items then have no icon).
[[nodiscard]] win::unique_bitmap make_menu_bitmap(HICON icon, int side) noexcept;

}  // namespace ov::shell

#pragma once

#include "shell/handles.h"

namespace ov::shell {

/// The product's icon at the size of menu buttons, destroyed by its owner; null when it cannot be loaded.
[[nodiscard]] unique_icon load_menu_icon() noexcept;

/// `icon` drawn into a 32-bit bitmap with alpha, as menu items want it, in the size of `load_menu_icon`; null
/// on any failure (the items then go without).
[[nodiscard]] unique_bitmap make_menu_bitmap(HICON icon) noexcept;

}  // namespace ov::shell

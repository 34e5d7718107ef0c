#pragma once

#include <windows.h>

#include <string>
#include <vector>

#include "ovufc/win/ui_handle.h"

namespace ov::shell {

/// What the submenu of a folder shows.
struct folder_submenu_content {
    /// Texts by command number.
    const std::vector<std::wstring>& texts;
    bool is_protected;
    bool driver_is_active;
    bool shows_unprotect;
    bool shows_exports;
};

struct folder_submenu {
    /// Null when the menu could not be made; the thread's last error then tells why.
    win::unique_menu menu;
    UINT item_count = 0;
};

/// Builds the submenu: the items' command ids count from `first_id` in the order of their positions.
[[nodiscard]] folder_submenu make_folder_submenu(const folder_submenu_content& content,
                                                 UINT first_id) noexcept;

}  // namespace ov::shell

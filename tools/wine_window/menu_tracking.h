#pragma once

#include <windows.h>
#include <shobjidl.h>

#include "tools/stand_ins/items/id_list_array.h"
#include "tools/stand_ins/items/task_memory.h"

namespace ov::wine_window {

/// Shows a selection's menu at a point of the screen, lets the user choose and runs what was chosen, with
/// `site` as the menu's site meanwhile. An empty menu is not shown. Blocks until the command has run.
///
/// `target` is the selection when it is one folder, else null: "Open" and "Explore" then go there in the
/// browser of the site, as in Explorer, where Wine's own menu would open a window of another program.
void track_menu(HWND owner, IContextMenu* menu, IUnknown* site, POINT where, UINT flags,
                PCIDLIST_ABSOLUTE target) noexcept;

/// How many of the menus asked for so far had nothing to show. Any thread.
[[nodiscard]] unsigned empty_menus() noexcept;

/// The absolute list of a selection that is one folder; null for any other.
[[nodiscard]] stand_ins::unique_absolute_list folder_target(
    IShellFolder* folder, const stand_ins::item_selection& selection) noexcept;

/// Runs a menu's default command, as a double-click on the selection does. S_FALSE when it has none.
[[nodiscard]] HRESULT run_default_command(HWND owner, IContextMenu* menu, IUnknown* site) noexcept;

}  // namespace ov::wine_window

#pragma once

#include <windows.h>
#include <shobjidl.h>

namespace ov::wine_window {

/// Shows a selection's menu at a point of the screen, lets the user choose and runs what was chosen, with
/// `site` as the menu's site meanwhile. An empty menu is not shown. Blocks until the command has run.
void track_menu(HWND owner, IContextMenu* menu, IUnknown* site, POINT where) noexcept;

/// How many of the menus asked for so far had nothing to show. Any thread.
[[nodiscard]] unsigned empty_menus() noexcept;

/// Runs a menu's default command, as a double-click on the selection does. S_FALSE when it has none.
[[nodiscard]] HRESULT run_default_command(HWND owner, IContextMenu* menu, IUnknown* site) noexcept;

}  // namespace ov::wine_window

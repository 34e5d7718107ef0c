#pragma once

#include <windows.h>

#include <string>
#include <vector>

namespace ov::shellhost {

/// The menus that are open now, the outermost first.
[[nodiscard]] std::vector<HWND> open_menus();

/// The menu that an open menu window shows.
[[nodiscard]] HMENU menu_of(HWND menu_window);

/// The message boxes and dialogs that this process shows.
[[nodiscard]] std::vector<HWND> open_dialogs();

/// A window's text, of any length.
[[nodiscard]] std::wstring window_text(HWND window);

}  // namespace ov::shellhost

#pragma once

#include <windows.h>

namespace ov::wine_window {

/// Makes the navigation pane of Wine's explorer browser so wide, which has no call for it: its splitter is
/// moved as by the mouse. `browser` is a window around the browser's. On Windows, and when there is no
/// splitter, nothing is done.
void set_navigation_pane_width(HWND browser, int width) noexcept;

}  // namespace ov::wine_window

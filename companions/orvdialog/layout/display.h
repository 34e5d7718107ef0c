#pragma once

#include <windows.h>

/// What the system says of sizes and fonts at a number of dots per inch. Before Windows 10 version 1607 there
/// is one such number for all screens, and what the system says is scaled from it. Any thread.
namespace ov::dialog {

/// The dots per inch that a window is drawn for.
[[nodiscard]] UINT dpi_of(HWND window) noexcept;

/// The font of message boxes, which dialogs use too.
[[nodiscard]] LOGFONTW message_font(UINT dpi) noexcept;

/// GetSystemMetrics.
[[nodiscard]] int metric(int index, UINT dpi) noexcept;

/// The size of `window` for a client area of this size.
[[nodiscard]] SIZE size_around(SIZE client, HWND window, UINT dpi) noexcept;

/// The system scales dialogs of some hosts by itself: not this one, which does so on WM_DPICHANGED.
void leave_scaling_to(HWND dialog) noexcept;

}  // namespace ov::dialog

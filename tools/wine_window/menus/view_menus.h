#pragma once

#include <windows.h>
#include <shobjidl.h>

namespace ov::wine_window {

/// Gives one of Wine's folder views what Explorer's views do by themselves: a right-click on items shows the
/// full menu with the registered handlers, and a double-click on an item whose folder uses this library's
/// menus runs the default verb, asked for as such (CMF_DEFAULTONLY). Everything else stays the view's.
///
/// `window` is the view's own; the menus last as long as it, and a second call does nothing. `site` is the
/// site that they get; it must outlive the window.
void attach_view_menus(IShellView* view, HWND window, IUnknown* site) noexcept;

}  // namespace ov::wine_window

#pragma once

#include <windows.h>
#include <shobjidl.h>

namespace ov::wine_window {

/// Gives one of Wine's folder views what Explorer's views do by themselves: a right-click on items shows the
/// full menu with the registered handlers, and a double-click on an item whose folder uses this library's
/// menus runs the default verb, asked for as such (CMF_DEFAULTONLY). Everything else stays the view's.
///
/// Call it once a view has its window; it lasts as long as the window. `site` is the site that the menus get;
/// it must outlive the view's window. On Windows nothing is done.
void attach_view_menus(IShellView* view, IUnknown* site) noexcept;

}  // namespace ov::wine_window

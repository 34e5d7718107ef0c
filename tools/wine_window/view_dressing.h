#pragma once

#include <windows.h>
#include <shobjidl.h>

namespace ov::wine_window {

/// Gives one of Wine's folder views what Explorer's do by themselves: the full menu on a right-click, default
/// verbs on a double-click (view_menus.h), and the folder's order for items that it calls equal
/// (view_order.h).
///
/// Call it each time a view is shown, once it has its window. `site` is the site that menus get; it must
/// outlive the view's window.
void complete_view(IFolderView* view, IUnknown* site) noexcept;

}  // namespace ov::wine_window

#pragma once

#include <windows.h>
#include <unknwn.h>

namespace ov::wine_window {

/// Gives Wine's navigation pane the menu that Explorer's shows on a right-click of a node: the folder's own
/// commands and those of the registered handlers.
///
/// The pane does not tell which folder a node stands for, so it is found by the names on the way from the
/// desktop; nodes outside the desktop's branch have no menu. `tree` is the pane's tree control; it lasts as
/// long as the tree, and `site`, which the menus get, must outlive it. On Windows nothing is done.
void attach_tree_menus(HWND tree, IUnknown* site) noexcept;

}  // namespace ov::wine_window

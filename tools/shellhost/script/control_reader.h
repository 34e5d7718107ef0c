#pragma once

#include <windows.h>
#include <commctrl.h>

#include <string>
#include <vector>

namespace ov::shellhost {

/// One visible node of a tree control.
struct tree_node {
    HTREEITEM item = nullptr;
    unsigned depth = 0;
    std::wstring text;
    bool is_selected = false;
    bool is_expanded = false;
};

/// The first window of a class among all descendants; null when there is none.
[[nodiscard]] HWND find_descendant(HWND root, const wchar_t* class_name);

/// The nodes that are shown or could be scrolled to, from top to bottom. For a tree of this process.
[[nodiscard]] std::vector<tree_node> read_tree(HWND tree);

/// The items of a list control, each with the texts of its columns. For a list of this process.
[[nodiscard]] std::vector<std::vector<std::wstring>> read_list(HWND list);

/// The header texts of a list control in details view; empty in other views.
[[nodiscard]] std::vector<std::wstring> read_columns(HWND list);

/// The menus that are open now, the outermost first.
[[nodiscard]] std::vector<HWND> open_menus();

/// The menu that an open menu window shows.
[[nodiscard]] HMENU menu_of(HWND menu_window);

/// The message boxes and dialogs that this process shows.
[[nodiscard]] std::vector<HWND> open_dialogs();

/// A window's text, of any length.
[[nodiscard]] std::wstring window_text(HWND window);

}  // namespace ov::shellhost

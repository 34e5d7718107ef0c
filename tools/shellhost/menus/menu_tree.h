#pragma once

#include <windows.h>
#include <shobjidl.h>

#include <optional>
#include <string>
#include <vector>

namespace ov::shellhost {

/// One item of a menu as a person would describe it.
struct menu_item {
    /// 0 for the menu itself, 1 for its submenus and so on.
    unsigned depth = 0;
    /// Without accelerator marks.
    std::wstring text;
    /// The command's offset; nothing for separators, submenus and items that are not the handlers'.
    std::optional<UINT> offset;
    bool is_separator = false;
    bool is_submenu = false;
    bool is_enabled = true;
    bool is_default = false;
    bool has_bitmap = false;
    /// What the handler says of it (GCS_HELPTEXTW); empty when it says nothing.
    std::wstring help;
};

/// Reads a menu that `handlers` filled with command ids from `first_id` on; depth first, as it is shown.
/// Without `handlers` (null) there is no help.
[[nodiscard]] std::vector<menu_item> read_menu(HMENU menu, UINT first_id, IContextMenu* handlers);

/// The item as one line: its number, text and state.
[[nodiscard]] std::wstring line_of(const menu_item& item);

/// The text of the item at a position, without accelerator marks.
[[nodiscard]] std::wstring menu_text(HMENU menu, UINT position);

/// A menu text without its accelerator marks and shortcut.
[[nodiscard]] std::wstring without_accelerators(const std::wstring& text);

/// The command that a person names by its number or by its text, accelerators and case aside; null when there
/// is none. Among equal texts the first counts.
[[nodiscard]] const menu_item* find_command(const std::vector<menu_item>& items, const std::wstring& name);

}  // namespace ov::shellhost

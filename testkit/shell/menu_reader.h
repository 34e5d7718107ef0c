#pragma once

#include <windows.h>

#include <iosfwd>
#include <string>
#include <vector>

namespace ov::test {

/// One item of a menu as a host sees it.
struct menu_item {
    std::wstring text;
    UINT id = 0;
    /// MF_GRAYED, MF_CHECKED … as the system reports them.
    UINT state = 0;
    HMENU submenu = nullptr;
    HBITMAP checked_bitmap = nullptr;
    HBITMAP unchecked_bitmap = nullptr;

    bool operator==(const menu_item&) const = default;
};
/// So that a failed expectation can be read.
void PrintTo(const menu_item& item, std::ostream* out);

/// The items of `menu` from the first to the last.
[[nodiscard]] std::vector<menu_item> read_menu(HMENU menu);

}  // namespace ov::test

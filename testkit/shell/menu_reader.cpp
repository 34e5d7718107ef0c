#include "testkit/shell/menu_reader.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <ostream>

namespace ov::test {

namespace {

menu_item read_item(HMENU menu, UINT position) {
    std::array<wchar_t, 512> text{};
    MENUITEMINFOW info{};
    info.cbSize = sizeof info;
    info.fMask = MIIM_STRING | MIIM_ID | MIIM_STATE | MIIM_SUBMENU | MIIM_CHECKMARKS;
    info.dwTypeData = text.data();
    info.cch = static_cast<UINT>(text.size());
    GetMenuItemInfoW(menu, position, TRUE, &info);
    return {text.data(), info.wID, info.fState, info.hSubMenu, info.hbmpChecked, info.hbmpUnchecked};
}

}  // namespace

void PrintTo(const menu_item& item, std::ostream* out) {
    *out << '"';
    for (const wchar_t character : item.text) {
        *out << static_cast<char>(character < 128 ? character : '?');
    }
    *out << "\" id " << item.id << " state " << item.state << (item.submenu != nullptr ? " with submenu" : "")
         << (item.unchecked_bitmap != nullptr ? " with bitmap" : "");
}

std::vector<menu_item> read_menu(HMENU menu) {
    std::vector<menu_item> items;
    const int count = GetMenuItemCount(menu);
    items.reserve(static_cast<std::size_t>(std::max(count, 0)));
    for (int position = 0; position < count; ++position) {
        items.push_back(read_item(menu, static_cast<UINT>(position)));
    }
    return items;
}

}  // namespace ov::test

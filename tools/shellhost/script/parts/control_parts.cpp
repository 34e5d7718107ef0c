#include "tools/shellhost/script/parts/control_parts.h"

#include <commctrl.h>

#include <array>

namespace ov::shellhost {

namespace {

constexpr int text_chars = 1024;

BOOL CALLBACK match_tree(HWND window, LPARAM found) {
    std::array<wchar_t, 32> name{};
    GetClassNameW(window, name.data(), static_cast<int>(name.size()));
    if (lstrcmpiW(name.data(), WC_TREEVIEWW) != 0) {
        return TRUE;
    }
    *reinterpret_cast<HWND*>(found) = window;
    return FALSE;
}

HWND find_tree(HWND browser) noexcept {
    HWND found = nullptr;
    EnumChildWindows(browser, match_tree, reinterpret_cast<LPARAM>(&found));
    return found;
}

struct tree_item {
    HTREEITEM handle;
    pane_node node;
};

RECT on_screen(HWND control, RECT place) noexcept {
    MapWindowPoints(control, nullptr, reinterpret_cast<POINT*>(&place), 2);
    return place;
}

void add_items(HWND tree, HTREEITEM first, unsigned depth, std::vector<tree_item>& items) {
    for (HTREEITEM item = first; item != nullptr; item = TreeView_GetNextSibling(tree, item)) {
        std::array<wchar_t, text_chars> text{};
        TVITEMW asked{};
        asked.mask = TVIF_TEXT | TVIF_STATE;
        asked.hItem = item;
        asked.stateMask = TVIS_SELECTED | TVIS_EXPANDED;
        asked.pszText = text.data();
        asked.cchTextMax = text_chars;
        SendMessageW(tree, TVM_GETITEMW, 0, reinterpret_cast<LPARAM>(&asked));
        RECT place{};
        const bool is_placed = TreeView_GetItemRect(tree, item, &place, TRUE);
        items.push_back({item,
                         {depth, asked.pszText, (asked.state & TVIS_SELECTED) != 0,
                          is_placed ? on_screen(tree, place) : RECT{}}});
        if ((asked.state & TVIS_EXPANDED) != 0) {
            add_items(tree, TreeView_GetChild(tree, item), depth + 1, items);
        }
    }
}

std::vector<tree_item> items_of(HWND tree) {
    std::vector<tree_item> items;
    add_items(tree, TreeView_GetRoot(tree), 0, items);
    return items;
}

}  // namespace

control_parts::control_parts(HWND browser, HWND view) noexcept
    : tree_(find_tree(browser)), list_(FindWindowExW(view, nullptr, WC_LISTVIEWW, nullptr)) {}

std::vector<pane_node> control_parts::nodes() const {
    std::vector<pane_node> nodes;
    for (tree_item& item : items_of(tree_)) {
        nodes.push_back(std::move(item.node));
    }
    return nodes;
}

bool control_parts::expand(const std::wstring& node) const {
    for (const tree_item& item : items_of(tree_)) {
        if (item.node.text == node) {
            TreeView_Expand(tree_, item.handle, TVE_EXPAND);
            return true;
        }
    }
    return false;
}

std::optional<RECT> control_parts::place_of_item(const std::wstring& /*name*/, int index) const {
    RECT place{};
    return ListView_GetItemRect(list_, index, &place, LVIR_LABEL) ? std::optional(on_screen(list_, place))
                                                                  : std::nullopt;
}

}  // namespace ov::shellhost

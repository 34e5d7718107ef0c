#include "tools/shellhost/script/control_reader.h"

#include <algorithm>
#include <array>

namespace ov::shellhost {

namespace {

constexpr int text_chars = 1024;
constexpr int class_chars = 64;
constexpr UINT message_get_menu = 0x01E1;  // MN_GETHMENU, which the headers leave out.
constexpr const wchar_t* menu_class = L"#32768";
constexpr const wchar_t* dialog_class = L"#32770";

bool is_of_class(HWND window, const wchar_t* class_name) {
    std::array<wchar_t, class_chars> name{};
    GetClassNameW(window, name.data(), class_chars);
    return lstrcmpiW(name.data(), class_name) == 0;
}

struct class_search {
    const wchar_t* class_name;
    HWND found;
};

BOOL CALLBACK match_class(HWND window, LPARAM parameter) {
    auto& search = *reinterpret_cast<class_search*>(parameter);
    if (!is_of_class(window, search.class_name)) {
        return TRUE;
    }
    search.found = window;
    return FALSE;
}

struct own_windows {
    const wchar_t* class_name;
    std::vector<HWND> found;
};

BOOL CALLBACK collect_own(HWND window, LPARAM parameter) {
    auto& search = *reinterpret_cast<own_windows*>(parameter);
    DWORD process = 0;
    GetWindowThreadProcessId(window, &process);
    if (process == GetCurrentProcessId() && IsWindowVisible(window) &&
        is_of_class(window, search.class_name)) {
        search.found.push_back(window);
    }
    return TRUE;
}

std::vector<HWND> own_windows_of(const wchar_t* class_name) {
    own_windows search{class_name, {}};
    EnumWindows(collect_own, reinterpret_cast<LPARAM>(&search));
    // Windows come with the topmost first; a submenu lies above the menu that it belongs to.
    std::reverse(search.found.begin(), search.found.end());
    return search.found;
}

void add_nodes(HWND tree, HTREEITEM first, unsigned depth, std::vector<tree_node>& nodes) {
    for (HTREEITEM item = first; item != nullptr; item = TreeView_GetNextSibling(tree, item)) {
        std::array<wchar_t, text_chars> text{};
        TVITEMW asked{};
        asked.mask = TVIF_TEXT | TVIF_STATE;
        asked.hItem = item;
        asked.stateMask = TVIS_SELECTED | TVIS_EXPANDED;
        asked.pszText = text.data();
        asked.cchTextMax = text_chars;
        SendMessageW(tree, TVM_GETITEMW, 0, reinterpret_cast<LPARAM>(&asked));
        const bool is_expanded = (asked.state & TVIS_EXPANDED) != 0;
        nodes.push_back({item, depth, asked.pszText, (asked.state & TVIS_SELECTED) != 0, is_expanded});
        if (is_expanded) {
            add_nodes(tree, TreeView_GetChild(tree, item), depth + 1, nodes);
        }
    }
}

std::wstring list_text(HWND list, int item, int column) {
    std::array<wchar_t, text_chars> text{};
    LVITEMW asked{};
    asked.iSubItem = column;
    asked.pszText = text.data();
    asked.cchTextMax = text_chars;
    SendMessageW(list, LVM_GETITEMTEXTW, static_cast<WPARAM>(item), reinterpret_cast<LPARAM>(&asked));
    return asked.pszText;
}

}  // namespace

HWND find_descendant(HWND root, const wchar_t* class_name) {
    class_search search{class_name, nullptr};
    EnumChildWindows(root, match_class, reinterpret_cast<LPARAM>(&search));
    return search.found;
}

std::vector<tree_node> read_tree(HWND tree) {
    std::vector<tree_node> nodes;
    add_nodes(tree, TreeView_GetRoot(tree), 0, nodes);
    return nodes;
}

std::vector<std::wstring> read_columns(HWND list) {
    std::vector<std::wstring> columns;
    std::array<wchar_t, text_chars> text{};
    LVCOLUMNW asked{};
    asked.mask = LVCF_TEXT;
    asked.pszText = text.data();
    asked.cchTextMax = text_chars;
    for (int i = 0;
         SendMessageW(list, LVM_GETCOLUMNW, static_cast<WPARAM>(i), reinterpret_cast<LPARAM>(&asked)); ++i) {
        columns.emplace_back(asked.pszText);
    }
    return columns;
}

std::vector<std::vector<std::wstring>> read_list(HWND list) {
    const auto columns = std::max<std::size_t>(1, read_columns(list).size());
    std::vector<std::vector<std::wstring>> items;
    const int count = ListView_GetItemCount(list);
    for (int i = 0; i < count; ++i) {
        std::vector<std::wstring>& texts = items.emplace_back();
        for (std::size_t column = 0; column < columns; ++column) {
            texts.push_back(list_text(list, i, static_cast<int>(column)));
        }
    }
    return items;
}

std::vector<HWND> open_menus() {
    return own_windows_of(menu_class);
}

HMENU menu_of(HWND menu_window) {
    return reinterpret_cast<HMENU>(SendMessageW(menu_window, message_get_menu, 0, 0));
}

std::vector<HWND> open_dialogs() {
    return own_windows_of(dialog_class);
}

std::wstring window_text(HWND window) {
    const LRESULT length = SendMessageW(window, WM_GETTEXTLENGTH, 0, 0);
    std::wstring text(static_cast<std::size_t>(length) + 1, L'\0');
    text.resize(static_cast<std::size_t>(
        SendMessageW(window, WM_GETTEXT, text.size(), reinterpret_cast<LPARAM>(text.data()))));
    return text;
}

}  // namespace ov::shellhost

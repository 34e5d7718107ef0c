#include "tools/wine_window/tree_menus.h"

#include <commctrl.h>
#include <shlobj.h>
#include <wrl/client.h>

#include <algorithm>
#include <array>
#include <string>
#include <vector>

#include "ovufc/com/guard.h"
#include "tools/stand_ins/items/item_paths.h"
#include "tools/stand_ins/system.h"
#include "tools/wine_window/menu_tracking.h"
#include "tools/wine_window/selection_menu.h"

namespace ov::wine_window {

namespace {

using Microsoft::WRL::ComPtr;

constexpr UINT_PTR subclass_id = 0x544D;
constexpr int text_chars = MAX_PATH;

std::wstring text_of(HWND tree, HTREEITEM node) {
    std::array<wchar_t, text_chars> text{};
    TVITEMW asked{};
    asked.mask = TVIF_TEXT;
    asked.hItem = node;
    asked.pszText = text.data();
    asked.cchTextMax = text_chars;
    SendMessageW(tree, TVM_GETITEMW, 0, reinterpret_cast<LPARAM>(&asked));
    return asked.pszText;
}

/// The names from the root of the node's branch down to it.
std::vector<std::wstring> way_to(HWND tree, HTREEITEM node) {
    std::vector<std::wstring> names;
    for (; node != nullptr; node = TreeView_GetParent(tree, node)) {
        names.push_back(text_of(tree, node));
    }
    std::reverse(names.begin(), names.end());
    return names;
}

stand_ins::unique_child_list find_child(IShellFolder* folder, const std::wstring& name) {
    ComPtr<IEnumIDList> enumerator;
    if (folder->EnumObjects(nullptr, SHCONTF_FOLDERS | SHCONTF_NONFOLDERS, enumerator.GetAddressOf()) !=
        S_OK) {
        return nullptr;
    }
    PITEMID_CHILD item = nullptr;
    ULONG fetched = 0;
    while (enumerator->Next(1, &item, &fetched) == S_OK) {
        stand_ins::unique_child_list child(item);
        if (stand_ins::name_of_item(folder, item, SHGDN_INFOLDER) == name) {
            return child;
        }
    }
    return nullptr;
}

/// A node of the desktop's branch as a selection of its parent folder.
struct node_selection {
    ComPtr<IShellFolder> folder;
    stand_ins::item_selection ids;
};

HRESULT find_node(const std::vector<std::wstring>& names, node_selection& found) {
    constexpr std::size_t first_below_desktop = 1;
    HRESULT result =
        names.size() > first_below_desktop ? SHGetDesktopFolder(found.folder.GetAddressOf()) : E_FAIL;
    PIDLIST_ABSOLUTE desktop = nullptr;
    if (SUCCEEDED(result)) {
        result = SHGetSpecialFolderLocation(nullptr, CSIDL_DESKTOP, &desktop);
        found.ids.folder.reset(desktop);
    }
    for (std::size_t i = first_below_desktop; SUCCEEDED(result) && i < names.size(); ++i) {
        stand_ins::unique_child_list child = find_child(found.folder.Get(), names[i]);
        if (child == nullptr) {
            return E_FAIL;
        }
        if (i + 1 == names.size()) {
            found.ids.items.push_back(std::move(child));
            break;
        }
        ComPtr<IShellFolder> next;
        result = found.folder->BindToObject(child.get(), nullptr, IID_PPV_ARGS(next.GetAddressOf()));
        found.folder = next;
        found.ids.folder.reset(ILCombine(found.ids.folder.get(), child.get()));
    }
    return result;
}

HRESULT show_menu(HWND tree, HTREEITEM node, IUnknown* site, POINT where) {
    node_selection selection;
    HRESULT result = find_node(way_to(tree, node), selection);
    if (FAILED(result)) {
        return result;
    }
    const auto children = selection.ids.children();
    ComPtr<IDataObject> data;
    (void)selection.folder->GetUIObjectOf(tree, 1, children.data(), __uuidof(IDataObject), nullptr,
                                          reinterpret_cast<void**>(data.GetAddressOf()));
    ComPtr<IContextMenu> menu;
    result =
        make_selection_menu(tree, selection.folder.Get(), selection.ids, data.Get(), menu.GetAddressOf());
    if (SUCCEEDED(result)) {
        const auto target = folder_target(selection.folder.Get(), selection.ids);
        track_menu(tree, menu.Get(), site, where, CMF_NORMAL | CMF_EXPLORE, target.get());
    }
    return result;
}

LRESULT CALLBACK pane_procedure(HWND pane, UINT message, WPARAM wparam, LPARAM lparam, UINT_PTR /*id*/,
                                DWORD_PTR data) {
    const auto* header = reinterpret_cast<const NMHDR*>(lparam);
    if (message == WM_NOTIFY && header->code == NM_RCLICK) {
        POINT where{};
        GetCursorPos(&where);
        TVHITTESTINFO hit{};
        hit.pt = where;
        ScreenToClient(header->hwndFrom, &hit.pt);
        const HTREEITEM node = TreeView_HitTest(header->hwndFrom, &hit);
        if (node != nullptr && com::guarded([&] {
                                   return show_menu(header->hwndFrom, node, reinterpret_cast<IUnknown*>(data),
                                                    where);
                               }) == S_OK) {
            return 1;
        }
    }
    if (message == WM_NCDESTROY) {
        RemoveWindowSubclass(pane, &pane_procedure, subclass_id);
    }
    return DefSubclassProc(pane, message, wparam, lparam);
}

}  // namespace

void attach_tree_menus(HWND tree, IUnknown* site) noexcept {
    if (stand_ins::system_is_wine() && tree != nullptr) {
        SetWindowSubclass(GetParent(tree), &pane_procedure, subclass_id, reinterpret_cast<DWORD_PTR>(site));
    }
}

}  // namespace ov::wine_window

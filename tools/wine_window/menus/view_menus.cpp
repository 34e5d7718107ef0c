#include "tools/wine_window/menus/view_menus.h"

#include <commctrl.h>
#include <windowsx.h>
#include <wrl/client.h>

#include <memory>
#include <new>

#include "ovufc/com/guard.h"
#include "tools/stand_ins/items/item_paths.h"
#include "tools/wine_window/menus/menu_tracking.h"
#include "tools/wine_window/menus/selection_menu.h"

namespace ov::wine_window {

namespace {

using Microsoft::WRL::ComPtr;

constexpr UINT_PTR subclass_id = 0x564D;
/// A window property: this view has its menus already.
constexpr const wchar_t* attached_mark = L"OrvaneViewMenus";

/// What is selected in a view, with everything a menu needs.
struct view_selection {
    ComPtr<IShellFolder> folder;
    ComPtr<IDataObject> data;
    stand_ins::item_selection ids;
};

/// The view is asked anew each time through its window's data; it lives as long as its window.
class attached_view {
  public:
    attached_view(IShellView* view, IUnknown* site) noexcept : view_(view), site_(site) {}

    [[nodiscard]] HRESULT read(view_selection& read) const {
        ComPtr<IFolderView> folder_view;
        HRESULT result = view_->GetItemObject(SVGIO_SELECTION, IID_PPV_ARGS(read.data.GetAddressOf()));
        if (SUCCEEDED(result)) {
            result = view_->QueryInterface(IID_PPV_ARGS(folder_view.GetAddressOf()));
        }
        if (SUCCEEDED(result)) {
            result = folder_view->GetFolder(IID_PPV_ARGS(read.folder.GetAddressOf()));
        }
        return SUCCEEDED(result) ? stand_ins::read_selection(read.data.Get(), read.ids) : result;
    }

    /// True when something is selected: the menu is ours to show.
    [[nodiscard]] bool has_selection() const {
        view_selection selection;
        return SUCCEEDED(read(selection));
    }

    /// True when the selected item's own menu has the registered handlers, as those of this library have.
    /// Wine's own folders know how to open their items, with a menu of their own.
    [[nodiscard]] bool activates() const {
        view_selection selection;
        ComPtr<IContextMenu> menu;
        return SUCCEEDED(read(selection)) && SUCCEEDED(own_menu(selection, menu)) && has_handlers(menu.Get());
    }

    [[nodiscard]] HRESULT show_menu(HWND window, POINT where) const {
        view_selection selection;
        ComPtr<IContextMenu> menu;
        HRESULT result = read(selection);
        if (SUCCEEDED(result)) {
            result = make_selection_menu(window, selection.folder.Get(), selection.ids, selection.data.Get(),
                                         menu.GetAddressOf());
        }
        if (SUCCEEDED(result)) {
            track_menu(window, menu.Get(), site_, where);
        }
        return result;
    }

    [[nodiscard]] HRESULT activate(HWND window) const {
        view_selection selection;
        ComPtr<IContextMenu> menu;
        HRESULT result = read(selection);
        if (SUCCEEDED(result)) {
            result = own_menu(selection, menu);
        }
        return SUCCEEDED(result) ? run_default_command(window, menu.Get(), site_) : result;
    }

  private:
    [[nodiscard]] static HRESULT own_menu(const view_selection& selection, ComPtr<IContextMenu>& menu) {
        const auto children = selection.ids.children();
        const HRESULT result = selection.folder->GetUIObjectOf(
            nullptr, static_cast<UINT>(children.size()), children.data(), __uuidof(IContextMenu), nullptr,
            reinterpret_cast<void**>(menu.ReleaseAndGetAddressOf()));
        return SUCCEEDED(result) && menu == nullptr ? E_NOINTERFACE : result;
    }

    IShellView* view_;
    IUnknown* site_;
};

/// Runs `body`; true when it returned true. What it throws is a failed allocation: the click is the view's
/// then.
template <class Body>
bool holds(Body&& body) noexcept {
    return com::guarded([&] { return body() ? S_OK : S_FALSE; }) == S_OK;
}

/// What a click leads to may take the view away, which its list control would not survive in the middle of
/// its own notification: clicks are answered by a message of their own.
enum posted_task : WPARAM { task_show_menu, task_activate };

UINT posted_message() noexcept {
    static const UINT message = RegisterWindowMessageW(L"OrvaneViewMenus");
    return message;
}

void run_posted(const attached_view& view, HWND window, WPARAM task, LPARAM parameter) {
    const POINT where{GET_X_LPARAM(parameter), GET_Y_LPARAM(parameter)};
    (void)com::guarded(
        [&] { return task == task_show_menu ? view.show_menu(window, where) : view.activate(window); });
}

/// Wine's view opens items on the double-click itself, and its list control tells of the activation as well.
bool opens_items(UINT code) noexcept {
    return code == LVN_ITEMACTIVATE || code == static_cast<UINT>(NM_DBLCLK) ||
           code == static_cast<UINT>(NM_RETURN);
}

LRESULT CALLBACK view_procedure(HWND window, UINT message, WPARAM wparam, LPARAM lparam, UINT_PTR /*id*/,
                                DWORD_PTR data) {
    auto* view = reinterpret_cast<attached_view*>(data);
    if (message == posted_message()) {
        run_posted(*view, window, wparam, lparam);
        return 0;
    }
    switch (message) {
        case WM_CONTEXTMENU:
            // One called up by the keyboard (-1) stays the view's own.
            if (lparam != -1 && holds([&] { return view->has_selection(); })) {
                PostMessageW(window, posted_message(), task_show_menu, lparam);
                return 0;
            }
            break;
        case WM_NOTIFY: {
            const UINT code = reinterpret_cast<const NMHDR*>(lparam)->code;
            if (opens_items(code) && holds([&] { return view->activates(); })) {
                if (code == LVN_ITEMACTIVATE) {
                    PostMessageW(window, posted_message(), task_activate, 0);
                }
                return 0;
            }
            break;
        }
        case WM_NCDESTROY: {
            RemoveWindowSubclass(window, &view_procedure, subclass_id);
            RemovePropW(window, attached_mark);
            const std::unique_ptr<attached_view> owner(view);
            return DefSubclassProc(window, message, wparam, lparam);
        }
        default:
            break;
    }
    return DefSubclassProc(window, message, wparam, lparam);
}

}  // namespace

void attach_view_menus(IShellView* view, HWND window, IUnknown* site) noexcept {
    if (GetPropW(window, attached_mark) != nullptr) {
        return;
    }
    std::unique_ptr<attached_view> made(new (std::nothrow) attached_view(view, site));
    if (made != nullptr &&
        SetWindowSubclass(window, &view_procedure, subclass_id, reinterpret_cast<DWORD_PTR>(made.get()))) {
        SetPropW(window, attached_mark, made.release());  // The window owns it from here on.
    }
}

}  // namespace ov::wine_window

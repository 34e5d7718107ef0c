#include "tools/wine_shell/menu_tracking.h"

#include <commctrl.h>
#include <shellapi.h>
#include <shlwapi.h>
#include <wrl/client.h>

#include "ovufc/win/handle.h"

namespace ov::wine_shell {

namespace {

using Microsoft::WRL::ComPtr;

constexpr UINT first_id = 1;
constexpr UINT last_id = 0x7FFF;
constexpr UINT_PTR subclass_id = 0x4D54;

struct menu_traits {
    using type = HMENU;
    static type invalid() noexcept { return nullptr; }
    static void close(type value) noexcept { DestroyMenu(value); }
};
using unique_menu = win::unique_handle<menu_traits>;

/// Sets a menu's site for the length of a scope.
class site_scope {
  public:
    site_scope(IContextMenu* menu, IUnknown* site) noexcept : menu_(menu) {
        (void)IUnknown_SetSite(menu_, site);
    }
    site_scope(const site_scope&) = delete;
    site_scope& operator=(const site_scope&) = delete;
    ~site_scope() { (void)IUnknown_SetSite(menu_, nullptr); }

  private:
    IContextMenu* menu_;
};

/// While a menu is shown its owner's messages about it belong to the menu object, which may fill its submenus
/// and draw its items.
LRESULT CALLBACK forward_menu_messages(HWND window, UINT message, WPARAM wparam, LPARAM lparam,
                                       UINT_PTR /*id*/, DWORD_PTR data) {
    switch (message) {
        case WM_INITMENUPOPUP:
        case WM_DRAWITEM:
        case WM_MEASUREITEM: {
            auto* menu = reinterpret_cast<IContextMenu2*>(data);
            if (SUCCEEDED(menu->HandleMenuMsg(message, wparam, lparam))) {
                return message == WM_INITMENUPOPUP ? 0 : TRUE;
            }
            break;
        }
        default:
            break;
    }
    return DefSubclassProc(window, message, wparam, lparam);
}

UINT choose(HWND owner, IContextMenu* object, HMENU menu, POINT where) noexcept {
    ComPtr<IContextMenu2> second;
    if (SUCCEEDED(object->QueryInterface(IID_PPV_ARGS(second.GetAddressOf())))) {
        SetWindowSubclass(owner, &forward_menu_messages, subclass_id,
                          reinterpret_cast<DWORD_PTR>(second.Get()));
    }
    const BOOL chosen = TrackPopupMenuEx(menu, TPM_LEFTALIGN | TPM_RETURNCMD | TPM_RIGHTBUTTON, where.x,
                                         where.y, owner, nullptr);
    RemoveWindowSubclass(owner, &forward_menu_messages, subclass_id);
    return static_cast<UINT>(chosen);
}

HRESULT invoke(HWND owner, IContextMenu* menu, UINT offset) noexcept {
    CMINVOKECOMMANDINFOEX info{};
    info.cbSize = sizeof info;
    info.fMask = CMIC_MASK_UNICODE;
    info.hwnd = owner;
    info.lpVerb = MAKEINTRESOURCEA(offset);
    info.lpVerbW = MAKEINTRESOURCEW(offset);
    info.nShow = SW_SHOWNORMAL;
    return menu->InvokeCommand(reinterpret_cast<CMINVOKECOMMANDINFO*>(&info));
}

}  // namespace

void track_menu(HWND owner, IContextMenu* menu, IUnknown* site, POINT where, UINT flags) noexcept {
    const unique_menu popup(CreatePopupMenu());
    const site_scope scope(menu, site);
    if (FAILED(menu->QueryContextMenu(popup.get(), 0, first_id, last_id, flags)) ||
        GetMenuItemCount(popup.get()) <= 0) {
        return;
    }
    const UINT chosen = choose(owner, menu, popup.get(), where);
    if (chosen >= first_id) {
        (void)invoke(owner, menu, chosen - first_id);
    }
}

HRESULT run_default_command(HWND owner, IContextMenu* menu, IUnknown* site) noexcept {
    const unique_menu popup(CreatePopupMenu());
    const site_scope scope(menu, site);
    const HRESULT result = menu->QueryContextMenu(popup.get(), 0, first_id, last_id, CMF_DEFAULTONLY);
    if (FAILED(result)) {
        return result;
    }
    const UINT chosen = GetMenuDefaultItem(popup.get(), FALSE, 0);
    return chosen != static_cast<UINT>(-1) ? invoke(owner, menu, chosen - first_id) : S_FALSE;
}

}  // namespace ov::wine_shell

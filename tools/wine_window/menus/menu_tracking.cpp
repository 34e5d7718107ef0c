#include "tools/wine_window/menus/menu_tracking.h"

#include <commctrl.h>
#include <shlwapi.h>
#include <wrl/client.h>

#include <atomic>

#include "ovufc/com/guard.h"
#include "ovufc/noncopyable.h"
#include "ovufc/win/ui_handle.h"
#include "tools/stand_ins/menus/menu_command.h"
#include "tools/wine_window/menus/menu_pictures.h"

namespace ov::wine_window {

namespace {

using Microsoft::WRL::ComPtr;
using stand_ins::first_command_id;
using stand_ins::last_command_id;
using stand_ins::run_menu_command;

constexpr UINT_PTR subclass_id = 0x4D54;

std::atomic<unsigned> empty_menus_so_far{0};

/// Sets a menu's site for the length of a scope.
class site_scope : private noncopyable {
  public:
    site_scope(IContextMenu* menu, IUnknown* site) noexcept : menu_(menu) {
        (void)IUnknown_SetSite(menu_, site);
    }
    ~site_scope() { (void)IUnknown_SetSite(menu_, nullptr); }

  private:
    IContextMenu* menu_;
};

/// Who answers the owner's messages about a menu while it is shown.
struct shown_menu {
    const menu_pictures& pictures;
    ComPtr<IContextMenu2> object;

    /// True when the message has been answered.
    [[nodiscard]] bool answer(UINT message, WPARAM wparam, LPARAM lparam) const noexcept {
        if (message == WM_MEASUREITEM && pictures.measure(*reinterpret_cast<MEASUREITEMSTRUCT*>(lparam))) {
            return true;
        }
        if (message == WM_DRAWITEM && pictures.draw(*reinterpret_cast<const DRAWITEMSTRUCT*>(lparam))) {
            return true;
        }
        return object != nullptr && SUCCEEDED(object->HandleMenuMsg(message, wparam, lparam));
    }
};

/// The menu object may fill its submenus and draw its items.
LRESULT CALLBACK forward_menu_messages(HWND window, UINT message, WPARAM wparam, LPARAM lparam,
                                       UINT_PTR /*id*/, DWORD_PTR data) {
    const bool is_about_menu =
        message == WM_INITMENUPOPUP || message == WM_DRAWITEM || message == WM_MEASUREITEM;
    if (is_about_menu && reinterpret_cast<const shown_menu*>(data)->answer(message, wparam, lparam)) {
        return message == WM_INITMENUPOPUP ? 0 : TRUE;
    }
    return DefSubclassProc(window, message, wparam, lparam);
}

UINT choose(HWND owner, IContextMenu* object, HMENU menu, POINT where) {
    const menu_pictures pictures(menu);
    shown_menu shown{pictures, nullptr};
    (void)object->QueryInterface(IID_PPV_ARGS(shown.object.GetAddressOf()));
    SetWindowSubclass(owner, &forward_menu_messages, subclass_id, reinterpret_cast<DWORD_PTR>(&shown));
    const BOOL chosen = TrackPopupMenuEx(menu, TPM_LEFTALIGN | TPM_RETURNCMD | TPM_RIGHTBUTTON, where.x,
                                         where.y, owner, nullptr);
    RemoveWindowSubclass(owner, &forward_menu_messages, subclass_id);
    return static_cast<UINT>(chosen);
}

}  // namespace

unsigned empty_menus() noexcept {
    return empty_menus_so_far;
}

void track_menu(HWND owner, IContextMenu* menu, IUnknown* site, POINT where) noexcept {
    const win::unique_menu popup(CreatePopupMenu());
    const site_scope scope(menu, site);
    if (FAILED(menu->QueryContextMenu(popup.get(), 0, first_command_id, last_command_id, CMF_NORMAL)) ||
        GetMenuItemCount(popup.get()) <= 0) {
        ++empty_menus_so_far;
        return;
    }
    (void)com::guarded([&] {
        const UINT chosen = choose(owner, menu, popup.get(), where);
        return chosen < first_command_id ? S_FALSE
                                         : run_menu_command(*menu, chosen - first_command_id, owner);
    });
}

HRESULT run_default_command(HWND owner, IContextMenu* menu, IUnknown* site) noexcept {
    const win::unique_menu popup(CreatePopupMenu());
    const site_scope scope(menu, site);
    const HRESULT result =
        menu->QueryContextMenu(popup.get(), 0, first_command_id, last_command_id, CMF_DEFAULTONLY);
    if (FAILED(result)) {
        return result;
    }
    const UINT chosen = GetMenuDefaultItem(popup.get(), FALSE, 0);
    return chosen != static_cast<UINT>(-1) ? run_menu_command(*menu, chosen - first_command_id, owner)
                                           : S_FALSE;
}

}  // namespace ov::wine_window

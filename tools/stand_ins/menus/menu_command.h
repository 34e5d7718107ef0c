#pragma once

#include <windows.h>
#include <shellapi.h>
#include <shobjidl.h>

namespace ov::stand_ins {

/// The command ids that a host gives a menu, as Explorer does: from 1 on.
inline constexpr UINT first_command_id = 1;
inline constexpr UINT last_command_id = 0x7FFF;

/// Runs the command at `offset` of a menu that has been queried, as a click on its item would.
[[nodiscard]] inline HRESULT run_menu_command(IContextMenu& menu, UINT offset, HWND owner) noexcept {
    CMINVOKECOMMANDINFOEX info{};
    info.cbSize = sizeof info;
    info.fMask = CMIC_MASK_UNICODE;
    info.hwnd = owner;
    info.lpVerb = MAKEINTRESOURCEA(offset);
    info.lpVerbW = MAKEINTRESOURCEW(offset);
    info.nShow = SW_SHOWNORMAL;
    return menu.InvokeCommand(reinterpret_cast<CMINVOKECOMMANDINFO*>(&info));
}

}  // namespace ov::stand_ins

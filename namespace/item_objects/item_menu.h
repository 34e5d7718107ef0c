#pragma once

#include <windows.h>
#include <shobjidl.h>

namespace ov::name_space {

/// The system's context menu for `count` entries of `folder`, which is at `place`, asked for `riid`. It holds
/// the handlers registered for what `create_item_associations` names.
/// https://learn.microsoft.com/windows/win32/api/shlobj_core/nf-shlobj_core-shcreatedefaultcontextmenu
[[nodiscard]] HRESULT create_item_menu(IShellFolder2& folder, PCIDLIST_ABSOLUTE place, HWND owner, UINT count,
                                       PCUITEMID_CHILD_ARRAY entries, REFIID riid, void** result) noexcept;

}  // namespace ov::name_space

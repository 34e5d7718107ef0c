#pragma once

#include <windows.h>
#include <shobjidl.h>

namespace ov::stand_ins {

/// The menu of a folder item's own command: "Open", the default, with the verb "open". It browses in the
/// browser of its site when there is one, else it asks the system to open the folder in a window of its own.
/// The list is copied.
[[nodiscard]] HRESULT make_open_folder_menu(PCIDLIST_ABSOLUTE target, IContextMenu** menu) noexcept;

}  // namespace ov::stand_ins

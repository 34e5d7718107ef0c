#pragma once

#include <windows.h>
#include <shobjidl.h>

#include "tools/stand_ins/items/id_list_array.h"

namespace ov::wine_window {

/// The menu that Explorer shows for a selection in a view: the folder's own commands with those of the
/// registered handlers between their first group and the rest.
///
/// Wine's own folders give a menu without handlers, which are added here by the class of the first item; a
/// menu that has them already (create_default_context_menu) is handed on as it is. `data` is the selection's
/// data object. Fails with what the folder's own menu fails with.
[[nodiscard]] HRESULT make_selection_menu(HWND owner, IShellFolder* folder,
                                          const stand_ins::item_selection& selection, IDataObject* data,
                                          IContextMenu** menu) noexcept;

/// True when a menu already has the registered handlers.
[[nodiscard]] bool has_handlers(IContextMenu* menu) noexcept;

}  // namespace ov::wine_window

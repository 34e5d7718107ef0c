#pragma once

#include <windows.h>
#include <shobjidl.h>

#include <string>
#include <vector>

#include "tools/stand_ins/items/id_list_array.h"

namespace ov::stand_ins {

/// The folder that an absolute id list names; the desktop for an empty list.
[[nodiscard]] HRESULT bind_folder(PCIDLIST_ABSOLUTE list, IShellFolder** folder) noexcept;

/// An item's name of the kind that `flags` (SHGDN_...) asks for; empty when the folder gives none.
[[nodiscard]] std::wstring name_of_item(IShellFolder* folder, PCUITEMID_CHILD item, SHGDNF flags);

/// The attributes among `mask` (SFGAO_...) that the folder reports for one item; 0 when it reports none.
[[nodiscard]] SFGAOF attributes_of_item(IShellFolder* folder, PCUITEMID_CHILD item, SFGAOF mask) noexcept;

/// The selection's paths in the file system, or nothing unless every item is SFGAO_FILESYSTEM and has one.
/// Items are asked one at a time: a folder may answer for single items only.
[[nodiscard]] std::vector<std::wstring> file_system_paths(const item_selection& selection);

}  // namespace ov::stand_ins

#pragma once

#include <windows.h>
#include <shobjidl.h>

#include <string>
#include <vector>

namespace ov::shellhost {

/// The columns that a folder shows unless the user says otherwise, in its order.
[[nodiscard]] std::vector<UINT> shown_columns(IShellFolder2* folder);

/// A column's text for an item, or its header where `item` is null; empty when the folder gives none.
[[nodiscard]] std::wstring column_text(IShellFolder2* folder, PCUITEMID_CHILD item, UINT column);

}  // namespace ov::shellhost

#pragma once

#include <windows.h>
#include <shobjidl.h>

#include <string>
#include <vector>

namespace ov::shellhost {

/// The header texts of the columns of a view's folder.
[[nodiscard]] std::vector<std::wstring> columns_of_view(IFolderView* view);

/// The items of a view in its order, each with the texts of its columns, the name first.
[[nodiscard]] std::vector<std::vector<std::wstring>> items_of_view(IFolderView* view);

}  // namespace ov::shellhost

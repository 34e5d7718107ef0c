#pragma once

#include <windows.h>
#include <shobjidl.h>
#include <wrl/client.h>

#include <string>
#include <vector>

#include "tools/stand_ins/items/id_list_array.h"

namespace ov::shellhost {

/// Files and directories of one folder, selected as in Explorer's view.
struct file_selection {
    /// Full paths, in the order given.
    std::vector<std::wstring> paths;
    Microsoft::WRL::ComPtr<IShellFolder> folder;
    stand_ins::item_selection ids;
    /// The shell folder's own data object for the items, or ours where the folder's has no CF_HDROP.
    Microsoft::WRL::ComPtr<IDataObject> data;
};

/// Selects `paths`. Throws command_failure with a sentence for the person when one does not exist, when they
/// are not in one folder, or when the shell has no object for them.
[[nodiscard]] file_selection select_files(const std::vector<std::wstring>& paths);

}  // namespace ov::shellhost

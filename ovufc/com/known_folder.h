#pragma once

#include <windows.h>
#include <shlobj.h>

#include <string>

#include "ovufc/com/task_memory.h"

namespace ov::com {

/// The path of a folder that the system knows; empty when it has none. Throws std::bad_alloc only.
/// https://learn.microsoft.com/windows/win32/api/shlobj_core/nf-shlobj_core-shgetknownfolderpath
[[nodiscard]] inline std::wstring known_folder_path(REFKNOWNFOLDERID folder) {
    wchar_t* path = nullptr;
    const HRESULT result = SHGetKnownFolderPath(folder, 0, nullptr, &path);
    const unique_task_text owned(path);
    return SUCCEEDED(result) && path != nullptr ? std::wstring(path) : std::wstring();
}

}  // namespace ov::com

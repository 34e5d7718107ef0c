#pragma once

#include <windows.h>

#include <string>

#include "companions/devservice/object_store.h"
#include "companions/devservice/records.h"

namespace ov::devservice {

/// Writes the recorded content, times and attributes into a new file. A Windows error code; no file on error.
[[nodiscard]] DWORD write_recorded(const object_store& objects, const file_record& record,
                                   const std::wstring& new_file);

/// Puts the recorded file at `path`. What stands there is first moved to `aside` (a path, not a folder, whose
/// own folder is made); nothing is moved before the recorded content is whole beside it.
[[nodiscard]] DWORD replace_with_recorded(const object_store& objects, const file_record& record,
                                          const std::wstring& path, const std::wstring& aside);

}  // namespace ov::devservice

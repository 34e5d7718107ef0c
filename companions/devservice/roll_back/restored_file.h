#pragma once

#include <windows.h>

#include <string>

#include "companions/devservice/store/object_store.h"
#include "companions/devservice/store/records.h"

namespace ov::devservice {

/// Writes the recorded content, times and attributes into a new file. A Windows error code; no file on error.
[[nodiscard]] DWORD write_recorded(const object_store& objects, const file_record& record,
                                   const std::wstring& new_file);

/// Puts the recorded file at `path`. The file that stands there is then at `aside` (a path, not a folder,
/// whose own folder is made). Whatever ends the process, a file that was at `path` is there in its old or its
/// new form, each whole. Refused when a link is on the way (ERROR_CANT_ACCESS_FILE) or a folder stands there
/// (ERROR_ALREADY_EXISTS).
[[nodiscard]] DWORD replace_with_recorded(const object_store& objects, const file_record& record,
                                          const std::wstring& path, const std::wstring& aside);

}  // namespace ov::devservice

#pragma once

#include <windows.h>

#include <string>

namespace ov::dialog {

/// Lets the user choose a folder with the system's own dialog, which starts at `start_path` if that exists.
/// Empty when the user chose none or the dialog cannot be shown. Needs no COM set up by the caller.
[[nodiscard]] std::wstring choose_folder(HWND owner, const std::wstring& start_path);

}  // namespace ov::dialog

#pragma once

#include <windows.h>

#include <optional>
#include <string>

namespace ov::dialog {

/// Lets the user choose a folder with the system's own dialog, which starts at `start_path` if that exists.
/// Empty text when the user chose none; nothing when the dialog cannot be shown: the system has none, or the
/// thread's stack is too small for it. Needs no COM set up by the caller.
[[nodiscard]] std::optional<std::wstring> choose_folder(HWND owner, const std::wstring& title,
                                                        const std::wstring& start_path);

}  // namespace ov::dialog

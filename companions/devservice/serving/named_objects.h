#pragma once

#include <string>

namespace ov::devservice {

/// The name of a kernel object that all processes on one state folder share, and those on another do not. In
/// the global name space, because a Windows service and a person's console are in different sessions.
[[nodiscard]] std::wstring object_name(const std::wstring& state_folder, const wchar_t* purpose);

}  // namespace ov::devservice

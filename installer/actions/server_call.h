#pragma once

#include <windows.h>

#include <string>

namespace ov::setup {

/// Calls one of a server's entry points for registration, such as "DllRegisterServer". The library is loaded
/// for the call alone. Gives what the entry point answers, or why it could not be called.
[[nodiscard]] HRESULT call_server(const std::wstring& path, const char* entry_point);

}  // namespace ov::setup

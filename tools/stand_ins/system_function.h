#pragma once

#include <windows.h>

namespace ov::stand_ins {

/// A function as the system's own DLL exports it, also when imports of it have been pointed elsewhere. Null
/// when the DLL is not loaded or has no such function.
template <class Function>
[[nodiscard]] Function* system_function(const wchar_t* dll, const char* name) noexcept {
    const HMODULE module = GetModuleHandleW(dll);
    return module == nullptr
               ? nullptr
               : reinterpret_cast<Function*>(reinterpret_cast<void*>(GetProcAddress(module, name)));
}

}  // namespace ov::stand_ins

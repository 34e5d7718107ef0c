#pragma once

#include <windows.h>

namespace ov::test {

/// A function of a loaded library by its address, past the imports that are patched: what a stand-in calls
/// on.
///
///     static auto* const real = unpatched<decltype(CoTaskMemFree)>(L"ole32.dll", "CoTaskMemFree");
template <class Function>
[[nodiscard]] Function* unpatched(const wchar_t* library, const char* name) noexcept {
    return reinterpret_cast<Function*>(
        reinterpret_cast<void*>(GetProcAddress(GetModuleHandleW(library), name)));
}

}  // namespace ov::test

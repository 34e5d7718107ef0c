#include "tools/wine_window/system.h"

#include <windows.h>

namespace ov::wine_window {

bool system_is_wine() noexcept {
    static const bool is_wine = [] {
        const HMODULE ntdll = GetModuleHandleW(L"ntdll.dll");
        return ntdll != nullptr && GetProcAddress(ntdll, "wine_get_version") != nullptr;
    }();
    return is_wine;
}

}  // namespace ov::wine_window

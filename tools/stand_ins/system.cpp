#include "tools/stand_ins/system.h"

#include <windows.h>

namespace ov::stand_ins {

bool system_is_wine() noexcept {
    static const bool is_wine = [] {
        const HMODULE ntdll = GetModuleHandleW(L"ntdll.dll");
        return ntdll != nullptr && GetProcAddress(ntdll, "wine_get_version") != nullptr;
    }();
    return is_wine;
}

}  // namespace ov::stand_ins

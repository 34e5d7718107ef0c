#include "tools/stand_ins/menus/registry_value.h"

#include <cwchar>

namespace ov::stand_ins {

unique_registry_key open_key_to_read(HKEY root, const wchar_t* path) noexcept {
    unique_registry_key key;
    (void)RegOpenKeyExW(root, path, 0, KEY_READ, key.put());
    return key;
}

std::wstring read_registry_text(HKEY key, const wchar_t* path, const wchar_t* value) {
    // Without RRF_NOEXPAND the call expands REG_EXPAND_SZ; the terminator is part of the size.
    DWORD size_bytes = 0;
    if (RegGetValueW(key, path, value, RRF_RT_REG_SZ, nullptr, nullptr, &size_bytes) != ERROR_SUCCESS) {
        return {};
    }
    std::wstring text(size_bytes / sizeof(wchar_t) + 1, L'\0');
    size_bytes = static_cast<DWORD>(text.size() * sizeof(wchar_t));
    if (RegGetValueW(key, path, value, RRF_RT_REG_SZ, nullptr, text.data(), &size_bytes) != ERROR_SUCCESS) {
        return {};
    }
    text.resize(std::wcslen(text.c_str()));
    return text;
}

}  // namespace ov::stand_ins

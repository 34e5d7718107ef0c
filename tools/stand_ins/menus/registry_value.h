#pragma once

#include <windows.h>

#include <string>

#include "ovufc/win/handle.h"

namespace ov::stand_ins {

struct registry_key_traits {
    using type = HKEY;
    static type invalid() noexcept { return nullptr; }
    static void close(type value) noexcept { RegCloseKey(value); }
};
/// An open registry key.
using unique_registry_key = win::unique_handle<registry_key_traits>;

/// Opens `path` under `root` for reading; empty when it is not there or may not be read.
[[nodiscard]] unique_registry_key open_key_to_read(HKEY root, const wchar_t* path) noexcept;

/// The text of a value below `key` (null for the key's default value), environment variables expanded. Empty
/// when there is none or when it is not a text.
[[nodiscard]] std::wstring read_registry_text(HKEY key, const wchar_t* path, const wchar_t* value);

}  // namespace ov::stand_ins

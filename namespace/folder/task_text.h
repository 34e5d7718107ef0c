#pragma once

#include <windows.h>
#include <shtypes.h>

#include <string_view>

namespace ov::name_space {

/// Fills `result` with a copy of `text`, zero-terminated, which the caller frees with the task allocator.
/// S_OK, or E_OUTOFMEMORY with `result` untouched.
[[nodiscard]] HRESULT put_text(std::wstring_view text, STRRET& result) noexcept;

}  // namespace ov::name_space

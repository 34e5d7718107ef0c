#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

/// Reading what a caller's pointers point to when the caller is not trusted: an invalid pointer or a text
/// without a terminator is found before anything is read. Memory that the caller frees meanwhile is not
/// guarded against. Any thread; nothing here throws but std::bad_alloc.
namespace ov::dialog {

/// How many of the `wanted_bytes` from `at` on can be read; 0 for a null pointer.
[[nodiscard]] std::size_t readable_bytes(const void* at, std::size_t wanted_bytes) noexcept;

/// True when all of the `size_bytes` from `at` on can be read and written.
[[nodiscard]] bool is_writable(const void* at, std::size_t size_bytes) noexcept;

/// The zero-terminated wide text at `at`, its length at most `limit_chars`; empty when there is none.
/// The caller's text may be unaligned, so it is not passed as a pointer to wchar_t.
[[nodiscard]] std::optional<std::wstring> read_wide_text(const void* at, std::size_t limit_chars);
/// The same for narrow text; a view into the caller's memory.
[[nodiscard]] std::optional<std::string_view> read_narrow_text(const char* at,
                                                               std::size_t limit_chars) noexcept;

}  // namespace ov::dialog

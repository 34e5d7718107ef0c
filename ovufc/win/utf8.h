#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

/// The system's UTF-16 to UTF-8 and back. An empty text is converted without asking the system.
///
///     const std::string text = win::to_utf8(path).value_or("");
///
/// Throws std::bad_alloc only.
namespace ov::win {

/// What becomes of text that is not well formed, such as half of a surrogate pair.
enum class ill_formed {
    replaced,  // U+FFFD takes the place of what is wrong
    refused,   // there is no result
};

/// None when the system does not convert it: refused, or too long for its 31-bit lengths.
/// https://learn.microsoft.com/windows/win32/api/stringapiset/nf-stringapiset-widechartomultibyte
[[nodiscard]] std::optional<std::string> to_utf8(std::wstring_view text,
                                                 ill_formed treatment = ill_formed::replaced);

/// https://learn.microsoft.com/windows/win32/api/stringapiset/nf-stringapiset-multibytetowidechar
[[nodiscard]] std::optional<std::wstring> from_utf8(std::string_view text,
                                                    ill_formed treatment = ill_formed::replaced);

/// The same into `room`, which has one unit more than `text` has bytes: how many units, with nothing behind
/// them. 0 where the other gives none.
[[nodiscard]] std::size_t from_utf8(std::string_view text, wchar_t* room,
                                    ill_formed treatment = ill_formed::replaced) noexcept;

}  // namespace ov::win

#pragma once

#include <string>

/// The shapes of text that the dialects take. Each is compiled on first use, by whichever thread comes first.
///
/// A text that is longer than any text of these shapes is refused before it is matched: the matching goes as
/// deep as the text is long.
namespace ov::time::patterns {

[[nodiscard]] bool is_iso(const std::wstring& text);
[[nodiscard]] bool is_iso_with_offset(const std::wstring& text);
[[nodiscard]] bool is_rfc1123(const std::wstring& text);
[[nodiscard]] bool is_us_date(const std::wstring& text);

}  // namespace ov::time::patterns

#pragma once

#include <string>

/// The shapes of text that the dialects take. Each is compiled on first use, by whichever thread comes first.
namespace ov::time::patterns {

[[nodiscard]] bool is_iso(const std::wstring& text);
[[nodiscard]] bool is_iso_with_offset(const std::wstring& text);
[[nodiscard]] bool is_rfc1123(const std::wstring& text);
[[nodiscard]] bool is_us_date(const std::wstring& text);

}  // namespace ov::time::patterns

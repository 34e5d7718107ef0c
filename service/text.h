#pragma once

#include <string>
#include <string_view>

/// The shell's UTF-16 to the wire's UTF-8 and back. Neither fails aloud: what cannot be converted is empty,
/// and what is not well formed comes out as U+FFFD. Both end at the first NUL. Only std::bad_alloc gets out.
namespace ov::service {

/// https://learn.microsoft.com/windows/win32/api/stringapiset/nf-stringapiset-widechartomultibyte
[[nodiscard]] std::string to_utf8(std::wstring_view text);

/// https://learn.microsoft.com/windows/win32/api/stringapiset/nf-stringapiset-multibytetowidechar
[[nodiscard]] std::wstring from_utf8(std::string_view text);

}  // namespace ov::service

#pragma once

#include <string>
#include <string_view>

/// The shell's UTF-16 to the wire's UTF-8 and back (ovufc/win/utf8.h), as the wire has it: what cannot be
/// converted is empty, what is not well formed comes out as U+FFFD, and both end at the first NUL. Only
/// std::bad_alloc gets out.
namespace ov::service {

[[nodiscard]] std::string to_utf8(std::wstring_view text);
[[nodiscard]] std::wstring from_utf8(std::string_view text);

/// The same into `room`, which has one unit more than `text` has bytes; what stands there then.
[[nodiscard]] std::wstring_view from_utf8(std::string_view text, wchar_t* room) noexcept;

}  // namespace ov::service

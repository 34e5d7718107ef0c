#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace ov::devservice {

/// UTF-16 to UTF-8 and back, strictly: none when the text is not well formed. A file whose name holds half a
/// surrogate pair therefore has no UTF-8 name, cannot stand in the state file, and is reported, not copied.
[[nodiscard]] std::optional<std::string> to_utf8(std::wstring_view text);
[[nodiscard]] std::optional<std::wstring> from_utf8(std::string_view text);

/// For messages to people: what cannot be converted becomes a replacement character.
[[nodiscard]] std::string to_utf8_lossy(std::wstring_view text);

}  // namespace ov::devservice

#pragma once

#include <array>
#include <cstddef>
#include <cwchar>
#include <string>

namespace ov::time {

/// Prints into a buffer of `LIMIT_CHARS`; what does not fit is cut.
///
/// The runtime's own printing: its formats mean what they mean on Windows, whatever the compiler makes of the
/// standard ones. "%ls" is a wide text in every meaning.
template <std::size_t LIMIT_CHARS, class... Arguments>
[[nodiscard]] std::wstring print(const wchar_t* format, Arguments... arguments) {
    std::array<wchar_t, LIMIT_CHARS> buffer{};
    _snwprintf(buffer.data(), buffer.size() - 1, format, arguments...);
    return buffer.data();
}

}  // namespace ov::time

#pragma once

#include <windows.h>

#include <cstdint>
#include <string>
#include <string_view>

namespace ov::shellhost {

/// Writes a line of text to standard output, in UTF-8 so that a script can read it; at once, unbuffered.
void print_line(std::wstring_view text);

/// Writes a line to standard error, behind the program's name.
void print_error(std::wstring_view text);

/// "0x8000FFFF", and what the system says about it where it says something.
[[nodiscard]] std::wstring describe(HRESULT result);

/// A number as "0x" and eight hexadecimal digits.
[[nodiscard]] std::wstring hexadecimal(std::uint32_t number);

}  // namespace ov::shellhost

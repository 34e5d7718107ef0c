#pragma once

#include <windows.h>

#include <cstdint>
#include <string>
#include <string_view>

#include "tools/command_line/console.h"

namespace ov::shellhost {

using command_line::print_line;
using command_line::print_note;

/// Writes a note behind the program's name: why it fails.
void print_error(std::wstring_view text);

/// "0x8000FFFF", and what the system says about it where it says something.
[[nodiscard]] std::wstring describe(HRESULT result);

/// A number as "0x" and eight hexadecimal digits.
[[nodiscard]] std::wstring hexadecimal(std::uint32_t number);

}  // namespace ov::shellhost

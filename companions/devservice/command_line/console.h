#pragma once

#include <windows.h>

#include <string>
#include <string_view>

namespace ov::devservice {

/// Writes a line for people (UTF-8), as tools/command_line/console.h does; an error with the program's name.
void print(std::string_view line);
void print_error(std::string_view line);

/// "text (Windows error 5)" with the system's words where it has them.
[[nodiscard]] std::string describe(DWORD error);

}  // namespace ov::devservice

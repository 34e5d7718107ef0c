#pragma once

#include <windows.h>

#include <string>
#include <string_view>

namespace ov::devservice {

/// Writes a line for people: to a console as Unicode, into a pipe or file as UTF-8. At once, unbuffered, so
/// that the log of a service that is killed is complete.
void print(std::string_view line);
void print_error(std::string_view line);

/// "text (Windows error 5)" with the system's words where it has them.
[[nodiscard]] std::string describe(DWORD error);

}  // namespace ov::devservice

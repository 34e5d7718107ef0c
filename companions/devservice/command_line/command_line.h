#pragma once

#include <string>
#include <vector>

namespace ov::devservice {

/// Runs orvsvc.exe with the words of its command line (without the program's own name) and gives its exit
/// code.
[[nodiscard]] int run_command_line(std::vector<std::wstring> words);

}  // namespace ov::devservice

#pragma once

#include <functional>
#include <string>
#include <vector>

#include "tools/command_line/arguments.h"

namespace ov::command_line {

/// Exit code of every program of ours for a command line that it cannot understand.
inline constexpr int exit_usage = 2;

/// The words that this process was started with, without the program's own name.
[[nodiscard]] std::vector<std::wstring> words_of_process();

/// Runs a program and gives its exit code: with --help or -h anywhere among the words `help` is printed and 0
/// returned, with --version the name and the product's version; a usage_error out of `body` becomes a line on
/// standard error and exit_usage.
[[nodiscard]] int run_program(const std::wstring& name, const std::wstring& help,
                              std::vector<std::wstring> words, const std::function<int(arguments&)>& body);

}  // namespace ov::command_line

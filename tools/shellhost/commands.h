#pragma once

#include "tools/command_line/arguments.h"

namespace ov::shellhost {

using command_line::arguments;
using command_line::usage_error;

/// One command of the program: its name, what `--help` says of it, and what runs it. Each returns an exit
/// code and throws usage_error when its words are off.
int run_menu(arguments& words);
int run_verbs(arguments& words);
int run_list(arguments& words);
int run_dialog(arguments& words);
int run_window(arguments& words);

extern const wchar_t* const menu_usage;
extern const wchar_t* const verbs_usage;
extern const wchar_t* const list_usage;
extern const wchar_t* const dialog_usage;
extern const wchar_t* const window_usage;

}  // namespace ov::shellhost

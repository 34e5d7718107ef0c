#pragma once

#include "tools/command_line/program.h"

namespace ov::shellhost {

/// What the program ends with; `--help` says the same.
enum exit_code : int {
    exit_done = 0,
    exit_failed = 1,
    exit_usage = command_line::exit_usage,
    exit_no_such_item = 3,
};

}  // namespace ov::shellhost

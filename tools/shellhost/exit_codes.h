#pragma once

namespace ov::shellhost {

/// What the program ends with; `--help` says the same.
enum exit_code : int {
    exit_done = 0,
    exit_failed = 1,
    exit_usage = 2,
    exit_no_such_item = 3,
};

}  // namespace ov::shellhost

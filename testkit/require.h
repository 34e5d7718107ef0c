#pragma once

#include <windows.h>

#include <stdexcept>
#include <string>

namespace ov::test {

/// Throws std::runtime_error, which fails a test and ends a tool, unless the work was done; with `what` and
/// the thread's last error.
inline void require(bool is_done, const std::string& what) {
    if (!is_done) {
        throw std::runtime_error(what + " (error " + std::to_string(GetLastError()) + ")");
    }
}

}  // namespace ov::test

#pragma once

#include <windows.h>

#include <string>
#include <vector>

namespace ov::devservice {

/// A file or folder that a piece of work had to leave out, and the Windows error that was in the way. The
/// work goes on with the rest.
struct problem {
    std::wstring path;
    DWORD error = ERROR_SUCCESS;
};

using problems = std::vector<problem>;

}  // namespace ov::devservice

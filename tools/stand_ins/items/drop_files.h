#pragma once

#include <string>
#include <vector>

#include "tools/stand_ins/items/global_memory.h"

namespace ov::stand_ins {

/// The content of the CF_HDROP clipboard format for `paths`, as "Shell Clipboard Formats" describes it: a
/// DROPFILES header followed by the paths in UTF-16, each with its terminator, and one terminator more.
/// Null when there is no memory.
[[nodiscard]] unique_global make_drop_files(const std::vector<std::wstring>& paths) noexcept;

}  // namespace ov::stand_ins
